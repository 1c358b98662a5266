#include "Host/Interface/Media/TickTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace zelmediatypes;

TEST(FrameRate, IsTheTicksOfOneSample) {
    EXPECT_EQ(FrameRateFromHz(48000.0F).Ticks(), 5292000);
    EXPECT_EQ(FrameRateFromHz(44100.0F).Ticks(), 5760000);
    EXPECT_EQ(FrameRateFromHz(96000.0F).Ticks(), 2646000);
}

TEST(FrameRate, OfARateThatDoesNotDivideASecondIsTruncated) {
    EXPECT_EQ(FrameRateFromHz(47952.0F).Ticks(), 5297297);  // 5297297.297...
    EXPECT_EQ(FrameRateFromHz(-44100.0F).Ticks(), -5760000);
}

TEST(FrameRate, OfNoRateIsMissing) {
    EXPECT_EQ(FrameRateFromHz(0.0F), kNoFrameRate);
    EXPECT_EQ(FrameRateFromHz(-0.0F), kNoFrameRate);
    EXPECT_EQ(kNoFrameRate.Ticks(), 0x7FFFFFFFFFFFFFFF);
}

TEST(FrameRate, OfRatesThatAreNoRatesIsDefined) {
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(FrameRateFromHz(std::nanf("")).Ticks(), kMin);
    EXPECT_EQ(FrameRateFromHz(std::numeric_limits<float>::infinity()).Ticks(), 0);
    EXPECT_EQ(FrameRateFromHz(std::numeric_limits<float>::denorm_min()).Ticks(), kMin);
    EXPECT_EQ(FrameRateFromHz(std::numeric_limits<float>::max()).Ticks(), 0);
}

TEST(FrameRate, GivesItsRateBack) {
    EXPECT_EQ(RateHz(FrameRate(5292000)), 48000.0);
    EXPECT_EQ(RateHz(kNoFrameRate), 0.0);
    EXPECT_TRUE(std::isinf(RateHz(FrameRate(0))));
}

TEST(TickTime, CountsWholeFrames) {
    const FrameRate frame(10);
    EXPECT_EQ(TickTime(0).ToFrame64(frame), 0);
    EXPECT_EQ(TickTime(9).ToFrame64(frame), 0);
    EXPECT_EQ(TickTime(10).ToFrame64(frame), 1);
}

TEST(TickTime, CountsFramesBeforeZeroDownwards) {
    const FrameRate frame(10);
    EXPECT_EQ(TickTime(-1).ToFrame64(frame), -1);
    EXPECT_EQ(TickTime(-10).ToFrame64(frame), -1);
    EXPECT_EQ(TickTime(-11).ToFrame64(frame), -2);
}

TEST(TickTime, HasNoFramesOfNoLength) {
    EXPECT_EQ(TickTime(12345).ToFrame64(FrameRate(0)), 0);
}

TEST(TickTime, ArithmeticWraps) {
    const TickTime last(std::numeric_limits<std::int64_t>::max());
    const TickTime first(std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(last + TickTime(1), first);
    EXPECT_EQ(first - TickTime(1), last);
    EXPECT_EQ(kNoFrameRate * 2, TickTime(-2));
}

TEST(TickTime, OneSecondOfSamplesIsOneSecond) {
    EXPECT_EQ(FrameRateFromHz(48000.0F) * 48000, TickTime(254016000000));
    EXPECT_LT(kTime_Zero, TickTime(1));
}

}  // namespace
