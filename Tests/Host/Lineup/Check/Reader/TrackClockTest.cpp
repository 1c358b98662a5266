#include "Host/Lineup/Check/Reader/Decoder/TrackClock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace {

using lineup::decoding::TrackClock;

constexpr double kTrackRate = 48000;
constexpr double kFine = 1 / 90000.0;
constexpr double kCoarse = 0.001;

double Rounded(double seconds, double tick) {
    return std::round(seconds / tick) * tick;
}

TEST(TrackClock, BeginsAtTheDistanceFromTheOrigin) {
    EXPECT_EQ(TrackClock(kTrackRate, 10).Next(10.5, kFine, 1024).position, 24000);
    EXPECT_EQ(TrackClock(kTrackRate, 10).Next(9.9, kFine, 1024).position, 0);
    EXPECT_EQ(TrackClock(kTrackRate, 10).Next(std::nullopt, kFine, 1024).position, 0);
    EXPECT_EQ(TrackClock(kTrackRate, 0).Next(1e9, kFine, 1024).position, 0);  // no start that anyone meant
}

TEST(TrackClock, LeavesNoGapWhereStampsAreOnlyRounded) {
    for (const double tick : {kFine, kCoarse}) {
        TrackClock clock(kTrackRate, 0);
        for (int frame = 0; frame < 10000; ++frame) {
            const auto place = clock.Next(Rounded(frame * 1024 / kTrackRate, tick), tick, 1024);
            ASSERT_EQ(place.gap, 0) << frame;
            ASSERT_EQ(place.position, frame * 1024);
        }
    }
}

TEST(TrackClock, LeavesNoGapWhereAClockDrifts) {
    TrackClock clock(kTrackRate, 0);
    for (int frame = 0; frame < 100000; ++frame) {
        ASSERT_EQ(clock.Next(frame * 1024 / kTrackRate * 1.0005, kFine, 1024).gap, 0) << frame;
    }
}

TEST(TrackClock, FindsThePacketThatIsMissing) {
    for (const double tick : {kFine, kCoarse}) {
        TrackClock clock(kTrackRate, 0);
        clock.Next(0, tick, 1024);
        const auto place = clock.Next(Rounded(2048 / kTrackRate, tick), tick, 1024);
        EXPECT_NEAR(static_cast<double>(place.gap), 1024, kTrackRate * tick);
        EXPECT_EQ(place.position, 1024 + place.gap);
        EXPECT_EQ(clock.End(), place.position + 1024);
    }
}

TEST(TrackClock, GoesOnAfterAGapFromItsOwnStamp) {
    TrackClock clock(kTrackRate, 0);
    clock.Next(0, kFine, 1024);
    clock.Next(1, kFine, 1024);
    EXPECT_EQ(clock.Next(1 + 1024 / kTrackRate, kFine, 1024).gap, 0);
}

TEST(TrackClock, FillsNothingWhereStampsGoBackOrFarAhead) {
    TrackClock clock(kTrackRate, 0);
    clock.Next(100, kFine, 1024);
    EXPECT_EQ(clock.Next(5, kFine, 1024).gap, 0);
    EXPECT_EQ(clock.Next(5 + 1024 / kTrackRate, kFine, 1024).gap, 0);
    EXPECT_EQ(clock.Next(50, kFine, 1024).gap, 0);
    EXPECT_EQ(clock.End() - std::llround(100 * kTrackRate), 4 * 1024);
}

TEST(TrackClock, CountsFramesThatHaveNoStamp) {
    TrackClock clock(kTrackRate, 0);
    clock.Next(0, kFine, 1024);
    EXPECT_EQ(clock.Next(std::nullopt, kFine, 1024).position, 1024);
    EXPECT_EQ(clock.Next(2048 / kTrackRate, kFine, 1024).gap, 0);
}

}  // namespace
