#include "Src/ToneGenerator/IdentSequences.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

namespace {

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

struct Row {
    std::int64_t lastStep;
};

constexpr std::array<Row, 3> kRows = {{{2}, {3}, {7}}};
constexpr FrameRate kRowCycle{80};
constexpr FrameRate kRowStep{10};

static_assert(ident::MakeOneCycle(kRows, kRowCycle, kRowStep));
static_assert(!ident::MakeOneCycle(kRows, FrameRate(90), kRowStep));
static_assert(!ident::MakeOneCycle(std::array<Row, 3>{{{3}, {3}, {7}}}, kRowCycle, kRowStep));
static_assert(!ident::MakeOneCycle(std::array<Row, 3>{{{3}, {2}, {7}}}, kRowCycle, kRowStep));

std::int64_t LastStepOfRowAt(std::int64_t step) {
    const Row* const row = ident::FindRow(kRows, step);
    return row != nullptr ? row->lastStep : -1;
}

TEST(IdentSequences, ARowRunsFromTheStepAfterTheRowAboveToItsLast) {
    EXPECT_EQ(LastStepOfRowAt(0), 2);
    EXPECT_EQ(LastStepOfRowAt(2), 2);
    EXPECT_EQ(LastStepOfRowAt(3), 3);
    EXPECT_EQ(LastStepOfRowAt(4), 7);
    EXPECT_EQ(LastStepOfRowAt(7), 7);
}

TEST(IdentSequences, StepsOutsideTheCycleHaveNoRow) {
    EXPECT_EQ(ident::FindRow(kRows, -1), nullptr);
    EXPECT_EQ(ident::FindRow(kRows, 8), nullptr);
    EXPECT_EQ(ident::FindRow(kRows, std::numeric_limits<std::int64_t>::min()), nullptr);
    EXPECT_EQ(ident::FindRow(kRows, std::numeric_limits<std::int64_t>::max()), nullptr);
}

TEST(IdentSequences, ABoundaryBelongsToTheStepThatBeginsThere) {
    const ident::CyclePosition before = ident::Locate(TickTime(189), kRowCycle, kRowStep);
    EXPECT_EQ(before.cycleStart, TickTime(160));
    EXPECT_EQ(before.stepStart, TickTime(180));
    EXPECT_EQ(before.step, 2);
    const ident::CyclePosition on = ident::Locate(TickTime(190), kRowCycle, kRowStep);
    EXPECT_EQ(on.stepStart, TickTime(190));
    EXPECT_EQ(on.step, 3);
}

TEST(IdentSequences, CyclesBeforeTheClipRunForwardsToo) {
    const ident::CyclePosition last = ident::Locate(TickTime(-1), kRowCycle, kRowStep);
    EXPECT_EQ(last.cycleStart, TickTime(-80));
    EXPECT_EQ(last.stepStart, TickTime(-10));
    EXPECT_EQ(last.step, 7);
}

TEST(IdentSequences, EveryTimeLiesInsideACycleEvenWhereItsStartWraps) {
    // The first cycle of all begins before the first tick there is; its start wraps, and the way into it does not.
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    for (const FrameRate cycle : {FrameRate(70), FrameRate(762048000000), FrameRate(3403814400000)}) {
        const FrameRate step(cycle.Ticks() / 7);
        for (const std::int64_t time : {kMin, kMin + 1, kMin + cycle.Ticks(), kMax - cycle.Ticks(), kMax}) {
            const ident::CyclePosition at = ident::Locate(TickTime(time), cycle, step);
            EXPECT_GE(at.step, 0) << time;
            EXPECT_LT(at.step, 7) << time;
            EXPECT_GE(TickTime(time) - at.stepStart, TickTime(0)) << time;
            EXPECT_LT(TickTime(time) - at.stepStart, TickTime(step.Ticks())) << time;
        }
    }
}

TEST(IdentSequences, ChannelListsAreAscending) {
    EXPECT_EQ(ident::ToChannelList(ident::kAllChannels), (ToneGenerator::ChannelList{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(ident::ToChannelList(ident::kCentre | ident::kRight), (ToneGenerator::ChannelList{1, 4}));
    EXPECT_EQ(ident::ToChannelList(ident::kLowFrequency), (ToneGenerator::ChannelList{5}));
    EXPECT_TRUE(ident::ToChannelList(ident::kNoChannels).empty());
}

}  // namespace
