#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include <lineup/WaveformOverview.h>
#include "Tests/Support/Oracle/Idents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

namespace {

using lineup::Clip;
using lineup::OverviewSpan;
using lineup::WaveformOverview;
using testing::Each;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

constexpr TickTime Milliseconds(std::int64_t milliseconds) {
    return TickTime(kTicksPerSecond / 1000 * milliseconds);
}

Clip Open(const lineup::BarsAndToneInfo& settings) {
    return Clip(std::make_shared<lineup::Importer>(TEST_BUNDLE), settings);
}

// The exact time of a column. No span of these tests is long enough to overflow.
TickTime ColumnTime(const OverviewSpan& span, int column) {
    const TickTime start = zelmediatypes::FrameRateFromHz(48000.0F) * span.startSample;
    return start + TickTime(span.length.Ticks() / span.columns * column +
                            span.length.Ticks() % span.columns * column / span.columns);
}

// The loudest of a channel between two times, looked for every 25 ms and at the end.
float Loudest(const oracle::Ident& ident, std::size_t channel, TickTime begin, TickTime end) {
    float loudest = ident.LevelAt(channel, end.Ticks() - oracle::kTicksAt48kHz);
    for (TickTime time = begin; time < end; time += Milliseconds(25)) {
        loudest = std::max(loudest, ident.LevelAt(channel, time.Ticks()));
    }
    return loudest;
}

// Every column of every channel shows the loudest of its own stretch of clip time; what begins in the last 64th may
// be left to the next.
void ExpectSchedule(const oracle::Ident& ident, const OverviewSpan& span) {
    const WaveformOverview overview = ReadOverview(Open(ident.Settings()), span);
    ASSERT_EQ(overview.channels.size(), ident.channels);
    const TickTime last64th(overview.columnLength.Ticks() / 64);
    for (std::size_t c = 0; c < ident.channels; ++c) {
        const auto& channel = overview.channels[c];
        ASSERT_EQ(channel.maxima.size(), static_cast<std::size_t>(span.columns));
        for (int i = 0; i < span.columns; ++i) {
            const TickTime begin = ColumnTime(span, i);
            const TickTime end = ColumnTime(span, i + 1);
            const float maximum = channel.maxima[static_cast<std::size_t>(i)];
            if (maximum != Loudest(ident, c, begin, end - last64th)) {
                ASSERT_EQ(maximum, Loudest(ident, c, begin, end)) << channel.name << " column " << i;
            }
            ASSERT_EQ(channel.minima[static_cast<std::size_t>(i)], -maximum) << channel.name << " column " << i;
        }
    }
}

TEST(WaveformOverview, ShowsTheGapOfEbuStereoInTheLeftChannelOnly) {
    // 300 columns of 10 ms: the gap from 2.75 s on begins with column 275.
    const auto overview = ReadOverview(Open(oracle::kStereo1000.Settings()), {0, Milliseconds(3000), 300});
    const std::vector<float>& left = overview.channels[0].maxima;
    EXPECT_THAT(std::vector(left.begin(), left.begin() + 275), Each(0.125F));
    EXPECT_THAT(std::vector(left.begin() + 275, left.end()), Each(0.0F));
    EXPECT_EQ(overview.channels[0].minima[274], -0.125F);
    EXPECT_EQ(overview.channels[0].minima[275], 0.0F);
    EXPECT_THAT(overview.channels[1].maxima, Each(0.125F));
    EXPECT_THAT(overview.channels[1].minima, Each(-0.125F));
}

TEST(WaveformOverview, FollowsEverySequenceThroughItsCycle) {
    ExpectSchedule(oracle::kStereo1000, {0, Milliseconds(3000), 1200});
    ExpectSchedule(oracle::kStereo400, {0, Milliseconds(3000), 12});
    ExpectSchedule(oracle::kMultichannel, {0, Milliseconds(12000), 24});
    ExpectSchedule(oracle::kMultichannel, {0, Milliseconds(12000), 1920});
    ExpectSchedule(oracle::kBlits, {0, Milliseconds(13400), 1340});
    ExpectSchedule(oracle::kBlits, {0, Milliseconds(13400), 134});
}

TEST(WaveformOverview, ShowsWhatBeginsWhereAnEdgeFallsOnAColumn) {
    // 3600 s in 14400 columns of 0.25 s: the gap is one of twelve, from edge to edge.
    ExpectSchedule(oracle::kStereo1000, {0, Milliseconds(3600000), 14400});
}

TEST(WaveformOverview, MissesNoBurstHoweverFewTheColumns) {
    ExpectSchedule(oracle::kBlits, {0, Milliseconds(13400LL * 300), 1000});  // of 4.02 s, with bursts of 0.6
    const auto day = ReadOverview(Open(oracle::kBlits.Settings()), {0, Milliseconds(24LL * 3600000), 1000});
    for (const auto& channel : day.channels) {
        EXPECT_THAT(channel.maxima, Each(0.125F)) << channel.name;
    }
}

TEST(WaveformOverview, DoesNotDriftInAnHour) {
    // No multiple of these columns, 1.7995 to 1.801 s, is a rate that a float or a tick count can say.
    ExpectSchedule(oracle::kStereo1000, {0, Milliseconds(3601000), 2000});
    ExpectSchedule(oracle::kBlits, {0, Milliseconds(3602000), 2000});
    ExpectSchedule(oracle::kMultichannel, {0, Milliseconds(3599000), 2000});

    const OverviewSpan hour{0, Milliseconds(3600000), 2000};
    const auto overview = ReadOverview(Open(oracle::kStereo1000.Settings()), hour);
    const TickTime covered = overview.columnLength * hour.columns;
    EXPECT_GE(covered, hour.length);
    EXPECT_LT(covered, hour.length + Milliseconds(1));  // 1/1800 of a column
}

TEST(WaveformOverview, StaysWithinAThirdOfAColumnAtItsFinestAndLongest) {
    constexpr int kColumns = lineup::kMostOverviewColumns;
    const Clip clip = Open(oracle::kStereo1000.Settings());
    for (const std::int64_t extraTicks : {0, 1, 40000, 65535}) {
        const TickTime length(lineup::kShortestColumn.Ticks() * kColumns + extraTicks);
        const auto overview = ReadOverview(clip, {0, length, kColumns});
        const std::int64_t lateTicks = overview.columnLength.Ticks() * kColumns - length.Ticks();
        EXPECT_GE(lateTicks, 0);
        EXPECT_LE(lateTicks, lineup::kShortestColumn.Ticks() / 3);
    }
}

TEST(WaveformOverview, FollowsTheSequencesBeforeZeroAndFarFromIt) {
    ExpectSchedule(oracle::kStereo1000, {-48000LL * 4, Milliseconds(8000), 800});  // -4 s to 4 s
    ExpectSchedule(oracle::kBlits, {-48000LL * 20, Milliseconds(30000), 1500});
    ExpectSchedule(oracle::kMultichannel, {48000LL * 3600 * 100, Milliseconds(24000), 960});
}

// The least and the greatest of 0.25 sin(2 pi cycles) from one count of cycles to another.
std::pair<double, double> SineRange(double from, double to) {
    std::pair range{1.0, -1.0};
    for (int k = 0; k <= 2000; ++k) {
        const double value = 0.25 * std::sin(2 * std::numbers::pi * (from + (to - from) * k / 2000));
        range = {std::min(range.first, value), std::max(range.second, value)};
    }
    return range;
}

TEST(WaveformOverview, FollowsTheWaveOfAToneFromColumnToColumn) {
    struct Case {
        double frequencyHz;
        std::int64_t startSample;
        int columns;  // of 50 ms
    };
    for (const Case& wave : {Case{100, 0, 1000}, {100, 12345, 3846}, {1000, 0, 401}, {1000, 7, 401}, {1000, 0, 200}}) {
        SCOPED_TRACE(testing::Message() << wave.frequencyHz << " Hz in " << wave.columns);
        const auto frequency = static_cast<float>(wave.frequencyHz);
        const auto overview =
            ReadOverview(Open({.frequency = frequency}), {wave.startSample, Milliseconds(50), wave.columns});
        EXPECT_TRUE(overview.showsWave);
        const double first = static_cast<double>(wave.startSample) / 48000 * wave.frequencyHz;
        const double cyclesPerColumn = 0.05 * wave.frequencyHz / wave.columns;
        // The phase is that of a point, of which there are 32 a cycle or one a column.
        const double slack = 0.25 * (0.005 + 2 * std::numbers::pi * std::min(1.0 / 32, cyclesPerColumn));
        for (int i = 0; i < wave.columns; ++i) {
            const auto [least, greatest] = SineRange(first + i * cyclesPerColumn, first + (i + 1) * cyclesPerColumn);
            const auto at = static_cast<std::size_t>(i);
            ASSERT_NEAR(overview.channels[0].maxima[at], greatest, wave.startSample == 0 ? 0.25 * 0.006 : slack) << i;
            ASSERT_NEAR(overview.channels[0].minima[at], least, wave.startSample == 0 ? 0.25 * 0.006 : slack) << i;
            ASSERT_TRUE(i == 0 || overview.channels[0].maxima[at] >= overview.channels[0].minima[at - 1]) << "a tear";
        }
    }
}

TEST(WaveformOverview, ShowsALevelWhereThereAreTooFewColumnsForAWave) {
    const Clip clip = Open({.frequency = 1000.0F});
    for (const int columns : {1, 1000, 1200, 3999}) {
        const auto overview = ReadOverview(clip, {0, Milliseconds(1000), columns});
        EXPECT_FALSE(overview.showsWave);
        for (const auto& channel : overview.channels) {
            EXPECT_THAT(channel.maxima, Each(0.25F));
            EXPECT_THAT(channel.minima, Each(-0.25F));
        }
    }
    EXPECT_TRUE(ReadOverview(clip, {0, Milliseconds(1000), 4000}).showsWave);
}

TEST(WaveformOverview, NamesTheChannelsInThePluginsOrder) {
    const auto names = [](const Clip& clip) {
        std::vector<std::string> all;
        for (const auto& channel : ReadOverview(clip, {0, Milliseconds(1000), 10}).channels) {
            all.push_back(channel.name);
        }
        return all;
    };
    EXPECT_THAT(names(Open(oracle::kBlits.Settings())), testing::ElementsAre("L", "R", "Ls", "Rs", "C", "LFE"));
    EXPECT_THAT(names(Open({.numChannels = 1})), testing::ElementsAre("M"));
    EXPECT_THAT(names(Open({.numChannels = 3})), testing::ElementsAre("1", "2", "3"));
}

TEST(WaveformOverview, TellsSilenceFromWhatWasNeverWritten) {
    lineup::BarsAndToneInfo settings = oracle::kStereo1000.Settings();
    settings.numChannels = 3;                                                             // the sequence writes two
    const auto overview = ReadOverview(Open(settings), {-12000, Milliseconds(250), 10});  // all of it the gap
    EXPECT_THAT(overview.channels[0].maxima, Each(0.0F));
    EXPECT_THAT(overview.channels[2].maxima, Each(testing::IsNan()));
    EXPECT_THAT(overview.channels[2].minima, Each(testing::IsNan()));
}

TEST(WaveformOverview, RefusesWhatItCannotShow) {
    const Clip clip = Open({});
    EXPECT_THROW(static_cast<void>(ReadOverview(clip, {0, Milliseconds(1000), 0})), lineup::Error);
    EXPECT_THROW(static_cast<void>(ReadOverview(clip, {0, Milliseconds(1000), 65537})), lineup::Error);
    EXPECT_NO_THROW(static_cast<void>(ReadOverview(clip, {0, Milliseconds(1), 1000})));
    try {
        static_cast<void>(ReadOverview(clip, {0, Milliseconds(1), 1001}));
        ADD_FAILURE() << "not refused";
    } catch (const lineup::UsageError& error) {
        EXPECT_STREQ(error.what(),
                     "duration 0.001: must be at least 0.001001 s, a microsecond for each of 1001 columns");
    }
}

}  // namespace
