#include <lineup/TimeAxis.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using lineup::NiceTimeStep;
using lineup::TimeLabel;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

constexpr std::int64_t kMicrosecond = kTicksPerSecond / 1000000;

constexpr TickTime Seconds(std::int64_t seconds) {
    return TickTime(seconds * kTicksPerSecond);
}
constexpr TickTime Microseconds(std::int64_t microseconds) {
    return TickTime(microseconds * kMicrosecond);
}

TEST(TimeAxis, StepsAreOnesTwosAndFives) {
    std::vector<std::int64_t> microseconds;
    for (TickTime step = NiceTimeStep(TickTime(1)); step <= Seconds(5); step = NiceTimeStep(step + TickTime(1))) {
        microseconds.push_back(step.Ticks() / kMicrosecond);
    }
    EXPECT_EQ(microseconds, (std::vector<std::int64_t>{1,     2,      5,      10,     20,      50,      100,
                                                       200,   500,    1000,   2000,   5000,    10000,   20000,
                                                       50000, 100000, 200000, 500000, 1000000, 2000000, 5000000}));
}

TEST(TimeAxis, StepsAboveSecondsAreThoseOfAClock) {
    std::vector<std::int64_t> seconds;
    for (TickTime step = NiceTimeStep(Seconds(6)); step <= Seconds(36000); step = NiceTimeStep(step + TickTime(1))) {
        seconds.push_back(step.Ticks() / kTicksPerSecond);
    }
    EXPECT_EQ(seconds,
              (std::vector<std::int64_t>{10, 20, 30, 60, 120, 300, 600, 1200, 1800, 3600, 7200, 18000, 36000}));
}

TEST(TimeAxis, LabelsHaveTheDecimalsOfTheirStep) {
    EXPECT_EQ(TimeLabel(Seconds(3), Seconds(1), Seconds(59)), "3 s");
    EXPECT_EQ(TimeLabel(Microseconds(2500000), Microseconds(500000), Seconds(5)), "2.5 s");
    EXPECT_EQ(TimeLabel(Seconds(2), Microseconds(20000), Seconds(5)), "2.00 s");
    EXPECT_EQ(TimeLabel(Microseconds(59999998), Microseconds(2), Seconds(59)), "59.999998 s");
}

TEST(TimeAxis, ShortAxesCountMilliseconds) {
    EXPECT_EQ(TimeLabel(Microseconds(20000), Microseconds(2000), Microseconds(20000)), "20 ms");
    EXPECT_EQ(TimeLabel(Microseconds(1250), Microseconds(50), Microseconds(2000)), "1.25 ms");
    EXPECT_EQ(TimeLabel(Microseconds(7), Microseconds(1), Microseconds(10)), "0.007 ms");
}

TEST(TimeAxis, LongAxesReadLikeAClock) {
    EXPECT_EQ(TimeLabel(Seconds(0), Seconds(10), Seconds(60)), "0:00");
    EXPECT_EQ(TimeLabel(Seconds(95), Seconds(5), Seconds(3599)), "1:35");
    EXPECT_EQ(TimeLabel(Microseconds(90250000), Microseconds(50000), Seconds(100)), "1:30.25");
    EXPECT_EQ(TimeLabel(Seconds(45296), Seconds(1), Seconds(45300)), "12:34:56");
}

TEST(TimeAxis, TimesBeforeZeroHaveAMinus) {
    EXPECT_EQ(TimeLabel(Microseconds(-500000), Microseconds(500000), Seconds(5)), "\u22120.5 s");
    EXPECT_EQ(TimeLabel(Seconds(-90), Seconds(30), Seconds(90)), "\u22121:30");
}

}  // namespace
