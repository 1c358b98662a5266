#include "Host/Lineup/Values/FrameTimes.h"

#include <gtest/gtest.h>

namespace {

using lineup::SamplesAtFrame;

TEST(FrameTimes, OfWholeRatesAreWholeSamples) {
    EXPECT_EQ(SamplesAtFrame(0, {25, 1}, 48000), 0);
    EXPECT_EQ(SamplesAtFrame(1, {25, 1}, 48000), 1920);
    EXPECT_EQ(SamplesAtFrame(125, {25, 1}, 48000), 240000);
    EXPECT_EQ(SamplesAtFrame(3, {50, 1}, 44100), 2646);
}

TEST(FrameTimes, OfFractionalRatesAreRoundedFromTheStart) {
    EXPECT_EQ(SamplesAtFrame(1, {30000, 1001}, 48000), 1602);  // 1601.6
    EXPECT_EQ(SamplesAtFrame(2, {30000, 1001}, 48000), 3203);  // 3203.2
    EXPECT_EQ(SamplesAtFrame(5, {30000, 1001}, 48000), 8008);
    EXPECT_EQ(SamplesAtFrame(1, {60000, 1001}, 48000), 801);  // 800.8
    EXPECT_EQ(SamplesAtFrame(1, {24000, 1001}, 48000), 2002);
    EXPECT_EQ(SamplesAtFrame(1, {30000, 1001}, 44100), 1471);  // 1471.47
}

TEST(FrameTimes, RoundHalvesUp) {
    EXPECT_EQ(SamplesAtFrame(1, {96000, 1}, 48000), 1);  // 0.5
    EXPECT_EQ(SamplesAtFrame(3, {96000, 1}, 48000), 2);  // 1.5
}

TEST(FrameTimes, HoldForAYearOfFrames) {
    // 365 days at 59.94: 1891620000 frames, rounded down to a multiple of 5, at 4004 samples each.
    EXPECT_EQ(SamplesAtFrame(1891620000, {60000, 1001}, 48000), 1514809296000);
}

}  // namespace
