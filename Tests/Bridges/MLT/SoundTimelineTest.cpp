#include "Bridges/MLT/SoundTimeline.h"

#include <gtest/gtest.h>

namespace {

using bridge::SoundTimeline;

constexpr int kRate = 48000;

TEST(SoundTimeline, StartsByTheClock) {
    SoundTimeline timeline;
    EXPECT_EQ(timeline.Start(7, 11211, 1602, kRate), 11211);
}

TEST(SoundTimeline, FollowsOnWhereTheLastFrameEnded) {
    SoundTimeline timeline;
    timeline.Start(7, 11211, 1601, kRate);
    EXPECT_EQ(timeline.Start(8, 12813, 1602, kRate), 12812);  // not 12813, which would skip a sample
    EXPECT_EQ(timeline.Start(9, 14414, 1602, kRate), 14414);
}

TEST(SoundTimeline, GoesByTheClockAfterAJump) {
    SoundTimeline timeline;
    timeline.Start(7, 11211, 1601, kRate);
    EXPECT_EQ(timeline.Start(9, 14414, 1602, kRate), 14414);
    EXPECT_EQ(timeline.Start(3, 4805, 1602, kRate), 4805);
}

TEST(SoundTimeline, GivesTheSameStartToAFrameThatIsAskedForAgain) {
    SoundTimeline timeline;
    timeline.Start(7, 11211, 1601, kRate);
    timeline.Start(8, 12813, 1602, kRate);
    EXPECT_EQ(timeline.Start(8, 12813, 1602, kRate), 12812);
    EXPECT_EQ(timeline.Start(9, 14414, 1602, kRate), 14414);
}

TEST(SoundTimeline, FollowsThePlaceThatPlayedLast) {
    SoundTimeline timeline;
    timeline.Start(8, 12813, 1602, kRate);  // a jump, long before
    timeline.Start(7, 11211, 1601, kRate);
    EXPECT_EQ(timeline.Start(8, 12813, 1602, kRate), 12812);
}

TEST(SoundTimeline, KeepsRatesApart) {
    SoundTimeline timeline;
    timeline.Start(7, 11211, 1601, kRate);
    EXPECT_EQ(timeline.Start(8, 11771, 1471, 44100), 11771);
    EXPECT_EQ(timeline.Start(8, 12813, 1602, kRate), 12812);
}

TEST(SoundTimeline, ReturnsToTheClockWhenMoreThanHalfAFrameOff) {
    SoundTimeline timeline;
    timeline.Start(0, 0, 1920, kRate);
    EXPECT_EQ(timeline.Start(1, 1920, 1000, kRate), 1920);
    EXPECT_EQ(timeline.Start(2, 3840, 1000, kRate), 3840);  // 920 short: more than half of 1000
}

TEST(SoundTimeline, ForgetsEverythingWhenToldTo) {
    SoundTimeline timeline;
    timeline.Start(7, 11211, 1601, kRate);
    timeline.Reset();
    EXPECT_EQ(timeline.Start(8, 12813, 1602, kRate), 12813);
}

}  // namespace
