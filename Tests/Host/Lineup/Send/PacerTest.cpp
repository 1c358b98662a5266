#include "Host/Lineup/Send/Clocks.h"
#include "Host/Lineup/Send/Pacer.h"
#include "Tests/Host/Lineup/Send/SimulatedClock.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr std::int64_t kMs = 1'000'000;

// A datagram a millisecond; before the tenth the machine stands still until 30 ms after the begin.
TEST(Pacer, MakesUpForADelayAtTwiceTheRateAtMost) {
    test::SimulatedClock clock(5 * kMs);
    clock.onWait = [&clock](std::int64_t ns) { clock.now = ns == 15 * kMs ? 35 * kMs : clock.now; };
    lineup::Pacer pacer(clock, std::nullopt);
    lineup::SendStatus status;
    std::vector<std::int64_t> sent;
    for (std::int64_t i = 0; i < 80; ++i) {
        ASSERT_TRUE(pacer.Wait(i * kMs, kMs, status));
        sent.push_back(clock.now - 5 * kMs);
    }
    for (std::size_t i = 1; i < sent.size(); ++i) {
        EXPECT_GE(sent[i], static_cast<std::int64_t>(i) * kMs);
        EXPECT_GE(sent[i] - sent[i < 4 ? 0 : i - 4], i < 4 ? 0 : kMs / 2);  // four at once at most
    }
    EXPECT_EQ(sent[10], 30 * kMs);
    EXPECT_EQ(sent[13], 30 * kMs);  // three more at once: 17 ms late
    EXPECT_EQ(sent[46], 46 * kMs + kMs / 2);
    EXPECT_EQ(sent[47], 47 * kMs);  // half a millisecond less in each that follows
    EXPECT_DOUBLE_EQ(status.worstLateMs, 20);
    EXPECT_EQ(status.lateDatagrams, 33);  // those by 20 ms down to 2.5 ms
    EXPECT_EQ(status.jumps, 0);
}

TEST(Pacer, GoesOnLaterWhereTheMachineStoodStill) {
    test::SimulatedClock clock;
    lineup::Pacer pacer(clock, std::nullopt);
    lineup::SendStatus status;
    ASSERT_TRUE(pacer.Wait(0, kMs, status));
    clock.now = 3'600'000 * kMs;
    ASSERT_TRUE(pacer.Wait(1 * kMs, kMs, status));
    ASSERT_TRUE(pacer.Wait(2 * kMs, kMs, status));
    EXPECT_EQ(clock.now, 3'600'001 * kMs);
    EXPECT_EQ(status.jumps, 1);
    EXPECT_EQ(status.lateDatagrams, 0);
}

TEST(Pacer, SaysWhenTheClockThatTellsClipTimeWasSet) {
    for (const std::int64_t leap : {-5000 * kMs, 5000 * kMs}) {
        test::SimulatedClock clock(10'000 * kMs);
        lineup::Pacer pacer(clock, 0);
        lineup::SendStatus status;
        ASSERT_TRUE(pacer.Wait(10'000 * kMs, kMs, status));
        clock.now += leap;
        EXPECT_FALSE(pacer.Wait(10'001 * kMs, kMs, status));
        EXPECT_EQ(status.jumps, 1);
    }
}

// Else a clock that is set back by an hour would stop the stream for an hour.
TEST(Pacer, LooksAgainAtASystemsClockThatIsFarFromTheTimeWaitedFor) {
    const auto clock = lineup::MakeClock(lineup::SendTiming::Wall);
    const std::int64_t inAnHour = clock->NowNs() + 3'600'000 * kMs;
    clock->WaitUntilNs(inAnHour);
    EXPECT_LT(clock->NowNs(), inAnHour);
}

}  // namespace
