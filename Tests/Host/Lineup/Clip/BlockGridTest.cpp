#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Clip/BlockGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

using lineup::BlockGrid;

TEST(BlockGrid, StartsABlockEveryTenthOfASecond) {
    const BlockGrid grid(48000);
    EXPECT_EQ(grid.BlockStart(0), 0);
    EXPECT_EQ(grid.BlockStart(4799), 0);
    EXPECT_EQ(grid.BlockStart(4800), 4800);
    EXPECT_EQ(grid.NextBlockStart(0), 4800);
    EXPECT_EQ(grid.NextBlockStart(4800), 9600);
}

TEST(BlockGrid, GoesOnBeforeZero) {
    const BlockGrid grid(48000);
    EXPECT_EQ(grid.BlockStart(-1), -4800);
    EXPECT_EQ(grid.NextBlockStart(-1), 0);
    EXPECT_EQ(grid.BlockStart(-4800), -4800);
    EXPECT_EQ(grid.BlockStart(-4801), -9600);
}

TEST(BlockGrid, IsWholeTenthsOfTheSampleRateWhereTheyAreWhole) {
    for (const float rateHz : {8000.0F, 32000.0F, 44100.0F, 48000.0F, 88200.0F, 96000.0F, 192000.0F}) {
        const BlockGrid grid(rateHz);
        const auto tenth = static_cast<std::int64_t>(rateHz / 10);
        for (std::int64_t block = -3; block < 3; ++block) {
            EXPECT_EQ(grid.BlockStart(block * tenth + tenth / 2), block * tenth) << rateHz;
        }
    }
}

TEST(BlockGrid, BeginsWithTheFirstSampleOfEachTenthWhereTheyAreNotWhole) {
    const BlockGrid grid(11025);  // 1102.5 samples a block
    EXPECT_EQ(grid.NextBlockStart(0), 1103);
    EXPECT_EQ(grid.NextBlockStart(1103), 2205);
    EXPECT_EQ(grid.BlockStart(1102), 0);
    EXPECT_EQ(grid.BlockStart(2204), 1103);
}

TEST(BlockGrid, EverySampleLiesInTheBlockThatItsClipTimeNames) {
    constexpr std::int64_t kTicksPerBlock = zelmediatypes::kTicksPerSecond / 10;
    for (const float rateHz : {11025.0F, 47952.0F, 44099.0F, 12345.0F}) {
        const BlockGrid grid(rateHz);
        const auto sample = zelmediatypes::FrameRateFromHz(rateHz);
        for (std::int64_t position = -20000; position < 20000; position += 37) {
            const std::int64_t start = grid.BlockStart(position);
            const std::int64_t next = grid.NextBlockStart(position);
            ASSERT_LE(start, position);
            ASSERT_GT(next, position);
            const auto block = (sample * position).ToFrame64(zelmediatypes::FrameRate(kTicksPerBlock));
            const auto blockOf = [&](std::int64_t at) {
                return (sample * at).ToFrame64(zelmediatypes::FrameRate(kTicksPerBlock));
            };
            ASSERT_EQ(blockOf(start), block);
            ASSERT_EQ(blockOf(start - 1), block - 1);
            ASSERT_EQ(blockOf(next), block + 1);
        }
    }
}

TEST(BlockGrid, HoldsAtTheEndsOfSixtyFourBits) {
    const BlockGrid grid(48000);
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    EXPECT_LE(grid.BlockStart(kMax), kMax);
    EXPECT_EQ(grid.NextBlockStart(kMax), kMax);
    EXPECT_EQ(grid.BlockStart(kMin), kMin);
    EXPECT_GT(grid.NextBlockStart(kMin), kMin);
}

TEST(BlockGrid, OfARateThatIsNoneStillMovesForward) {
    for (const float rateHz : {-48000.0F, std::numeric_limits<float>::infinity(), std::nanf("")}) {
        const BlockGrid grid(rateHz);
        EXPECT_LE(grid.BlockStart(1000), 1000);
        EXPECT_GT(grid.NextBlockStart(1000), 1000);
    }
}

TEST(BlockGrid, NoBlockIsLongerThanItSays) {
    // The lowest float there is has no ticks for a sample: the grid is then that of 48 kHz.
    for (const float rateHz : {1e-38F, 1e-5F, 3.0F, 11025.0F, 47952.0F, 48000.0F, 1e6F}) {
        const BlockGrid grid(rateHz);
        std::int64_t longest = 0;
        std::int64_t position = -1'000'000;
        for (int block = 0; block < 40; ++block) {
            const std::int64_t next = grid.NextBlockStart(position);
            longest = std::max(longest, next - grid.BlockStart(position));
            position = next;
        }
        EXPECT_LE(longest, grid.LongestBlock()) << rateHz;
        EXPECT_GE(longest, grid.LongestBlock() - 1) << rateHz;
    }
}

}  // namespace
