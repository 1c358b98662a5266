#include "Host/Lineup/Check/Watch/FeedClock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace {

constexpr double kNobody = 1e9;

// Packets of 20 ms that come up to 3 ms late, the more the longer one looks at them, by a clock that is too fast; all
// those of every `busy`-th second 50 ms later, where it is not 0.
void Deliver(lineup::FeedClock& clock, double ppm, int packets, double firstStamp = 0, int busy = 0) {
    std::uint32_t random = 1;
    for (int i = 0; i < packets; ++i) {
        random = random * 1664525U + 1013904223U;
        const double stamp = i * 0.02;
        const double late = static_cast<double>(random >> 8U) / (1U << 24U) * 0.003;
        const bool isBusy = busy > 0 && static_cast<int>(stamp) % busy == busy - 1;
        clock.Add(firstStamp + stamp, stamp / (1 + ppm * 1e-6) + late + (isBusy ? 0.05 : 0) + 100);
    }
}

TEST(FeedClock, KnowsTheSendersClockAgainstThisOne) {
    for (const double ppm : {-40.0, 0.0, 15.0}) {
        lineup::FeedClock clock;
        Deliver(clock, ppm, 50 * 120);
        EXPECT_NEAR(clock.SenderPpm().value_or(kNobody), ppm, 2);
        EXPECT_NEAR(clock.TakeSpreadMs().value_or(0), 3 + std::abs(ppm) * 0.12, 0.5);
    }
}

TEST(FeedClock, TakesNoSecondsForItInWhichTheMachineIsBusy) {
    for (const int busy : {4, 5, 11}) {
        lineup::FeedClock clock;
        Deliver(clock, -100, 50 * 16, 0, busy);
        EXPECT_NEAR(clock.SenderPpm().value_or(kNobody), -100, 10) << "every " << busy << "th second";
    }
}

TEST(FeedClock, KnowsItTheBetterTheLongerItGoesOn) {
    lineup::FeedClock clock;
    Deliver(clock, 200, 50 * 3600, 0, 3);
    EXPECT_NEAR(clock.SenderPpm().value_or(kNobody), 200, 0.05);
}

TEST(FeedClock, LeavesOutWhatWasHeldBackAtTheStart) {
    lineup::FeedClock clock;
    for (int i = 0; i < 200; ++i) {
        clock.Add(i * 0.02 - 4, 99.999);
    }
    Deliver(clock, 10, 50 * 120);
    EXPECT_NEAR(clock.SenderPpm().value_or(kNobody), 10, 2);
}

TEST(FeedClock, SaysNothingUntilItIsKnown) {
    lineup::FeedClock clock;
    Deliver(clock, 0, 50 * 5);
    EXPECT_FALSE(clock.SenderPpm().has_value());
    Deliver(clock, 0, 50 * 120, 5000);  // stamps that begin anew
    EXPECT_NEAR(clock.SenderPpm().value_or(kNobody), 0, 2);
}

}  // namespace
