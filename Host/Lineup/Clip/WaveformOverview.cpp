#include <lineup/ChannelLayout.h>
#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include <lineup/WaveformOverview.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>

using zelmediatypes::FrameRate;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace lineup {

namespace {

// A steady tone is asked for at this many points a cycle: the crest lies within 0.5 % (0.04 dB) of one of them.
constexpr double kPointsPerCycle = 32;

// No sound or gap of a line-up sequence is shorter.
constexpr TickTime kShortestSound(kTicksPerSecond / 20);

// What begins in the last 64th of a column shows in the next one: a rate in single precision drifts by less.
constexpr double kEndShare = 64;

// Of one overview, all channels together; beyond, points stand further apart.
constexpr std::int64_t kMostValues = std::int64_t{1} << 21;

double Seconds(TickTime time) {
    return static_cast<double>(time.Ticks()) / static_cast<double>(kTicksPerSecond);
}

void CheckSpan(const OverviewSpan& span) {
    if (span.columns < 1 || span.columns > kMostOverviewColumns) {
        throw Error(fmt::format("cannot make an overview of {} columns: there can be 1 to {}", span.columns,
                                kMostOverviewColumns));
    }
    if (span.length.Ticks() / span.columns > kLongestColumn.Ticks()) {
        throw UsageError(
            "duration", fmt::format("{:g}", Seconds(span.length)),
            fmt::format("must be at most {:g} s for each of {} columns", Seconds(kLongestColumn), span.columns));
    }
    const TickTime shortest(kShortestColumn.Ticks() * span.columns);
    if (span.length < shortest) {
        throw UsageError("duration", fmt::format("{:g}", Seconds(span.length)),
                         fmt::format("must be at least {:g} s, a microsecond for each of {} columns", Seconds(shortest),
                                     span.columns));
    }
}

// The highest rate at which the plug-in steps at least `columnTicks` a value. The rate is a float and the
// step whole ticks, so the step can seldom be met exactly. It is rounded up: then an edge that falls on a
// column's time lies at or before that column, which shows what begins there and not what ended.
float PeakRate(std::int64_t columnTicks) {
    auto rateHz = static_cast<float>(zelmediatypes::RateHz(FrameRate(columnTicks)));
    while (zelmediatypes::FrameRateFromHz(rateHz).Ticks() < columnTicks) {
        rateHz = std::nextafter(rateHz, 0.0F);
    }
    return rateHz;
}

// How the plug-in is asked. It answers with points: a tone's wave at that moment, or a sequence's level.
struct Sampling {
    std::int64_t pointsPerColumn = 1;
    float rateHz = 0;       ///< of the points
    bool isTraced = false;  ///< points follow the wave: a column reaches to the first point of the next
    bool hasEdges = false;  ///< levels change between points: the end of each column is asked for too
};

std::int64_t MostPointsPerColumn(const Clip& clip, int columns) {
    return std::max<std::int64_t>(1, kMostValues / columns / clip.NumChannels());
}

// Points of a sequence stand as close as its shortest sound or gap could be.
Sampling SampleIdent(std::int64_t columnTicks, std::int64_t mostPoints) {
    const std::int64_t wanted = (columnTicks - 1) / kShortestSound.Ticks() + 1;
    return {.pointsPerColumn = std::min(wanted, mostPoints), .hasEdges = true};
}

// Asked for points sparser than its cycles, the plug-in says the level of a tone.
Sampling SampleTone(float frequencyHz, float columnRateHz, std::int64_t mostPoints) {
    const double columnsPerCycle =
        static_cast<double>(columnRateHz) / std::abs(static_cast<double>(frequencyHz));  // infinite at 0
    if (columnsPerCycle < kFewestColumnsPerCycle && frequencyHz > 0) {
        return {.rateHz = std::min(columnRateHz, frequencyHz / 2)};
    }
    const double wanted = std::max(1.0, std::ceil(kPointsPerCycle / columnsPerCycle));
    return {.pointsPerColumn = std::min(static_cast<std::int64_t>(std::min(wanted, kPointsPerCycle)), mostPoints),
            .isTraced = true};
}

Sampling ChooseSampling(const Clip& clip, int columns, std::int64_t columnTicks) {
    const BarsAndToneInfo settings = clip.Settings().value_or(BarsAndToneInfo{});
    const std::int64_t mostPoints = MostPointsPerColumn(clip, columns);
    Sampling sampling = settings.identifyChannels == 1
                            ? SampleIdent(columnTicks, mostPoints)
                            : SampleTone(settings.frequency, PeakRate(columnTicks), mostPoints);
    if (sampling.rateHz == 0) {
        sampling.rateHz = PeakRate((columnTicks - 1) / sampling.pointsPerColumn + 1);
    }
    return sampling;
}

// The points of every channel; NaN where the plug-in wrote nothing.
struct Points {
    Points(const Clip& clip, std::int64_t startSample, float rateHz, std::int64_t count)
        : maxima(Unwritten(clip, count)), minima(maxima) {
        std::vector<std::span<float>> upper(maxima.begin(), maxima.end());
        std::vector<std::span<float>> lower(minima.begin(), minima.end());
        clip.ReadPeaks(startSample, rateHz, upper, lower);
    }

    std::vector<std::vector<float>> maxima;
    std::vector<std::vector<float>> minima;

private:
    static std::vector<std::vector<float>> Unwritten(const Clip& clip, std::int64_t count) {
        constexpr float kUnwritten = std::numeric_limits<float>::quiet_NaN();
        return {static_cast<std::size_t>(clip.NumChannels()),
                std::vector<float>(static_cast<std::size_t>(count), kUnwritten)};
    }
};

// Column i takes the `reach` points from i * step on. A NaN counts only among NaNs.
std::vector<float> Folded(const std::vector<float>& points, std::size_t step, std::size_t reach, std::size_t columns,
                          float (*choose)(float, float)) {
    std::vector<float> folded(columns);
    for (std::size_t i = 0; i < columns; ++i) {
        float chosen = points[i * step];
        for (std::size_t k = 1; k < reach; ++k) {
            chosen = choose(chosen, points[i * step + k]);
        }
        folded[i] = chosen;
    }
    return folded;
}

float Greater(float a, float b) {
    return std::fmax(a, b);
}

float Lesser(float a, float b) {
    return std::fmin(a, b);
}

std::string ChannelName(const ChannelLayout* layout, std::size_t channel) {
    return layout == nullptr ? fmt::format("{}", channel + 1) : std::string(layout->channels[channel]);
}

// What sounds at the end of a column and did not at any of its points began after the last of them.
void AddColumnEnds(const Clip& clip, float columnRateHz, WaveformOverview& overview) {
    const double samples = static_cast<double>(clip.SampleRate()) / static_cast<double>(columnRateHz);
    if (samples <= 1) {
        return;
    }
    const std::int64_t early = std::max<std::int64_t>(1, std::llround(samples / kEndShare));
    const std::int64_t start = std::max(overview.span.startSample, std::numeric_limits<std::int64_t>::min() + early);
    const Points ends(clip, start - early, columnRateHz, overview.span.columns + 1);
    for (std::size_t c = 0; c < overview.channels.size(); ++c) {
        ChannelOverview& channel = overview.channels[c];
        for (std::size_t i = 0; i < channel.maxima.size(); ++i) {
            channel.maxima[i] = std::fmax(channel.maxima[i], ends.maxima[c][i + 1]);
            channel.minima[i] = std::fmin(channel.minima[i], ends.minima[c][i + 1]);
        }
    }
}

}  // namespace

WaveformOverview ReadOverview(const Clip& clip, const OverviewSpan& span) {
    CheckSpan(span);
    const std::int64_t columnTicks = (span.length.Ticks() - 1) / span.columns + 1;
    const Sampling sampling = ChooseSampling(clip, span.columns, columnTicks);
    const auto columns = static_cast<std::size_t>(span.columns);
    const auto step = static_cast<std::size_t>(sampling.pointsPerColumn);
    const std::size_t reach = sampling.isTraced ? step + 1 : step;

    const Points points(clip, span.startSample, sampling.rateHz, sampling.pointsPerColumn * span.columns + 1);
    const bool asksSparser = !sampling.isTraced && !sampling.hasEdges;
    const float pointRateHz = asksSparser ? PeakRate(columnTicks) : sampling.rateHz;
    WaveformOverview overview{
        .span = span,
        .start = zelmediatypes::FrameRateFromHz(clip.SampleRate()) * span.startSample,
        .columnLength = FrameRate(zelmediatypes::FrameRateFromHz(pointRateHz).Ticks() * sampling.pointsPerColumn),
        .showsWave = sampling.isTraced,
        .channels = {}};
    const ChannelLayout* const layout = FindChannelLayout(clip.NumChannels());
    for (std::size_t c = 0; c < points.maxima.size(); ++c) {
        overview.channels.push_back({ChannelName(layout, c), Folded(points.maxima[c], step, reach, columns, Greater),
                                     Folded(points.minima[c], step, reach, columns, Lesser)});
    }
    if (sampling.hasEdges) {
        AddColumnEnds(clip, PeakRate(columnTicks), overview);
    }
    return overview;
}

}  // namespace lineup
