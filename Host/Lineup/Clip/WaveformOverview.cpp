#include <lineup/ChannelLayout.h>
#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include <lineup/WaveformOverview.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

using zelmediatypes::FrameRate;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace lineup {

namespace {

double Seconds(TickTime time) {
    return static_cast<double>(time.Ticks()) / static_cast<double>(kTicksPerSecond);
}

void CheckSpan(const OverviewSpan& span) {
    if (span.columns < 1 || span.columns > kMostOverviewColumns) {
        throw Error(fmt::format("cannot make an overview of {} columns: there can be 1 to {}", span.columns,
                                kMostOverviewColumns));
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

// The plug-in traces a steady tone down to one point a cycle. Where that is too few to show the tone, it is
// asked at half the tone's frequency and answers with the level, which is the same at every time.
float RateToAskAt(const Clip& clip, float columnRateHz) {
    const BarsAndToneInfo settings = clip.Settings().value_or(BarsAndToneInfo{});
    const bool traces = settings.identifyChannels != 1;
    const bool tooFew = settings.frequency * static_cast<float>(kFewestColumnsPerCycle) > columnRateHz;
    return traces && tooFew ? std::min(columnRateHz, settings.frequency / 2) : columnRateHz;
}

std::vector<ChannelOverview> UnwrittenChannels(const Clip& clip, int columns) {
    constexpr float kUnwritten = std::numeric_limits<float>::quiet_NaN();
    const ChannelLayout* const layout = FindChannelLayout(clip.NumChannels());
    std::vector<ChannelOverview> channels;
    for (int c = 0; c < clip.NumChannels(); ++c) {
        const auto name =
            layout == nullptr ? fmt::format("{}", c + 1) : std::string(layout->channels[static_cast<std::size_t>(c)]);
        const std::vector<float> values(static_cast<std::size_t>(columns), kUnwritten);
        channels.push_back({name, values, values});
    }
    return channels;
}

}  // namespace

WaveformOverview ReadOverview(const Clip& clip, const OverviewSpan& span) {
    CheckSpan(span);
    const std::int64_t columnTicks = (span.length.Ticks() - 1) / span.columns + 1;
    const float columnRateHz = PeakRate(columnTicks);

    WaveformOverview overview{span, zelmediatypes::FrameRateFromHz(columnRateHz),
                              UnwrittenChannels(clip, span.columns)};
    std::vector<std::span<float>> maxima;
    std::vector<std::span<float>> minima;
    for (ChannelOverview& channel : overview.channels) {
        maxima.emplace_back(channel.maxima);
        minima.emplace_back(channel.minima);
    }
    clip.ReadPeaks(span.startSample, RateToAskAt(clip, columnRateHz), maxima, minima);
    return overview;
}

}  // namespace lineup
