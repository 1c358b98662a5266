#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include <lineup/WaveformOverview.h>
#include "Tests/Host/Lineup/Clip/IdentSchedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
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

Clip Open(const BarsAndToneInfo& settings) {
    return Clip(std::make_shared<lineup::Importer>(TEST_BUNDLE), settings);
}

// The exact time of a column. No span of these tests is long enough to overflow.
TickTime ColumnTime(const OverviewSpan& span, int column) {
    const TickTime start = zelmediatypes::FrameRateFromHz(48000.0F) * span.startSample;
    return start + TickTime(span.length.Ticks() / span.columns * column +
                            span.length.Ticks() % span.columns * column / span.columns);
}

// Every column of every channel shows the level of its own clip time.
void ExpectSchedule(const test::Schedule& schedule, const OverviewSpan& span) {
    const WaveformOverview overview = ReadOverview(Open(schedule.Settings()), span);
    ASSERT_EQ(overview.channels.size(), schedule.numChannels);
    for (int c = 0; c < static_cast<int>(schedule.numChannels); ++c) {
        const auto& channel = overview.channels[static_cast<std::size_t>(c)];
        ASSERT_EQ(channel.maxima.size(), static_cast<std::size_t>(span.columns));
        for (int i = 0; i < span.columns; ++i) {
            const float level = schedule.Level(c, ColumnTime(span, i));
            ASSERT_EQ(channel.maxima[static_cast<std::size_t>(i)], level) << channel.name << " column " << i;
            ASSERT_EQ(channel.minima[static_cast<std::size_t>(i)], -level) << channel.name << " column " << i;
        }
    }
}

TEST(WaveformOverview, ShowsTheGapOfEbuStereoInTheLeftChannelOnly) {
    // 300 columns of 10 ms: the gap from 2.75 s on begins with column 275.
    const auto overview = ReadOverview(Open(test::kEbuStereo.Settings()), {0, Milliseconds(3000), 300});
    const std::vector<float>& left = overview.channels[0].maxima;
    EXPECT_THAT(std::vector(left.begin(), left.begin() + 275), Each(0.125F));
    EXPECT_THAT(std::vector(left.begin() + 275, left.end()), Each(0.0F));
    EXPECT_EQ(overview.channels[0].minima[274], -0.125F);
    EXPECT_EQ(overview.channels[0].minima[275], 0.0F);
    EXPECT_THAT(overview.channels[1].maxima, Each(0.125F));
    EXPECT_THAT(overview.channels[1].minima, Each(-0.125F));
}

TEST(WaveformOverview, FollowsEverySequenceThroughItsCycle) {
    ExpectSchedule(test::kEbuStereo, {0, Milliseconds(3000), 1200});
    ExpectSchedule(test::kEbuStereo400, {0, Milliseconds(3000), 12});
    ExpectSchedule(test::kEbuMultichannel, {0, Milliseconds(12000), 24});
    ExpectSchedule(test::kEbuMultichannel, {0, Milliseconds(12000), 1920});
    ExpectSchedule(test::kBlits, {0, Milliseconds(13400), 1340});
    ExpectSchedule(test::kBlits, {0, Milliseconds(13400), 134});
}

TEST(WaveformOverview, ShowsWhatBeginsWhereAnEdgeFallsOnAColumn) {
    // 3600 s in 2000 columns of 1.8 s: every fifth column falls on a multiple of 3 s, where a gap ends. The
    // rate, 0.5555... a second, has no exact float.
    ExpectSchedule(test::kEbuStereo, {0, Milliseconds(3600000), 2000});
}

TEST(WaveformOverview, DoesNotDriftInAnHour) {
    // No multiple of these columns, 1.7995 to 1.801 s, is a rate that a float or a tick count can say. A last
    // column that stood a few milliseconds late would have crossed an edge here and there.
    ExpectSchedule(test::kEbuStereo, {0, Milliseconds(3601000), 2000});
    ExpectSchedule(test::kBlits, {0, Milliseconds(3602000), 2000});
    ExpectSchedule(test::kEbuMultichannel, {0, Milliseconds(3599000), 2000});

    const OverviewSpan hour{0, Milliseconds(3600000), 2000};
    const auto overview = ReadOverview(Open(test::kEbuStereo.Settings()), hour);
    const TickTime covered = overview.columnLength * hour.columns;
    EXPECT_GE(covered, hour.length);
    EXPECT_LT(covered, hour.length + Milliseconds(1));  // 1/1800 of a column
}

TEST(WaveformOverview, StaysWithinAThirdOfAColumnAtItsFinestAndLongest) {
    constexpr int kColumns = lineup::kMostOverviewColumns;
    const Clip clip = Open(test::kEbuStereo.Settings());
    for (const std::int64_t extraTicks : {0, 1, 40000, 65535}) {
        const TickTime length(lineup::kShortestColumn.Ticks() * kColumns + extraTicks);
        const auto overview = ReadOverview(clip, {0, length, kColumns});
        const std::int64_t lateTicks = overview.columnLength.Ticks() * kColumns - length.Ticks();
        EXPECT_GE(lateTicks, 0);
        EXPECT_LE(lateTicks, lineup::kShortestColumn.Ticks() / 3);
    }
}

TEST(WaveformOverview, FollowsTheSequencesBeforeZeroAndFarFromIt) {
    ExpectSchedule(test::kEbuStereo, {-48000LL * 4, Milliseconds(8000), 800});  // -4 s to 4 s
    ExpectSchedule(test::kBlits, {-48000LL * 20, Milliseconds(30000), 1500});
    ExpectSchedule(test::kEbuMultichannel, {48000LL * 3600 * 100, Milliseconds(24000), 960});
}

TEST(WaveformOverview, TracesASlowToneAsItsWaveform) {
    // 100 Hz over 50 ms in 1000 columns of 50 us: column i is 0.25 sin(2 pi i / 200).
    const auto overview = ReadOverview(Open({.frequency = 100.0F}), {0, Milliseconds(50), 1000});
    for (const auto& channel : overview.channels) {
        EXPECT_EQ(channel.maxima, channel.minima);
        for (std::size_t i = 0; i < 1000; ++i) {
            const double expected = 0.25 * std::sin(2 * std::numbers::pi * static_cast<double>(i) / 200);
            ASSERT_NEAR(channel.maxima[i], expected, 1e-5) << i;
        }
    }
}

TEST(WaveformOverview, TracesAToneAtMostAColumnBeforeTheColumnsTime) {
    // From sample 12345 on in columns of 13 us: a column of 100 Hz turns by 2 pi 100 * 13e-6 at the most.
    const OverviewSpan span{12345, TickTime(kTicksPerSecond / 1000000 * 13 * 4000), 4000};
    const auto overview = ReadOverview(Open({.frequency = 100.0F}), span);
    const double columnRadians = 2 * std::numbers::pi * 100 * 13e-6;
    for (std::size_t i = 0; i < 4000; ++i) {
        const double seconds = 12345.0 / 48000 + 13e-6 * static_cast<double>(i);
        const double radians = std::fmod(seconds * 100, 1) * 2 * std::numbers::pi;
        ASSERT_NEAR(overview.channels[0].maxima[i], 0.25 * std::sin(radians), 0.25 * columnRadians + 1e-6) << i;
    }
}

TEST(WaveformOverview, ShowsAFastToneAsABandOfItsLevel) {
    const auto overview = ReadOverview(Open({.frequency = 1000.0F}), {0, Milliseconds(5000), 1000});
    for (const auto& channel : overview.channels) {
        EXPECT_THAT(channel.maxima, Each(0.25F));
        EXPECT_THAT(channel.minima, Each(-0.25F));
    }
}

TEST(WaveformOverview, TracesNoToneThatItHasTooFewColumnsFor) {
    const Clip clip = Open({.frequency = 1000.0F});
    // 1.2 columns a cycle, of which the plug-in itself would make a line of 200 Hz.
    EXPECT_THAT(ReadOverview(clip, {0, Milliseconds(1000), 1200}).channels[0].minima, Each(-0.25F));
    EXPECT_THAT(ReadOverview(clip, {0, Milliseconds(1000), 7999}).channels[0].minima, Each(-0.25F));
    const auto eight = ReadOverview(clip, {0, Milliseconds(1000), 8000});
    EXPECT_EQ(eight.channels[0].maxima, eight.channels[0].minima);
}

TEST(WaveformOverview, NamesTheChannelsInThePluginsOrder) {
    const auto names = [](const Clip& clip) {
        std::vector<std::string> all;
        for (const auto& channel : ReadOverview(clip, {0, Milliseconds(1000), 10}).channels) {
            all.push_back(channel.name);
        }
        return all;
    };
    EXPECT_THAT(names(Open(test::kBlits.Settings())), testing::ElementsAre("L", "R", "Ls", "Rs", "C", "LFE"));
    EXPECT_THAT(names(Open({.numChannels = 1})), testing::ElementsAre("M"));
    EXPECT_THAT(names(Open({.numChannels = 3})), testing::ElementsAre("1", "2", "3"));
}

TEST(WaveformOverview, TellsSilenceFromWhatWasNeverWritten) {
    BarsAndToneInfo settings = test::kEbuStereo.Settings();
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
