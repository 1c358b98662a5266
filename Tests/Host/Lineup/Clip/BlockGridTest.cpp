#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Clip/BlockGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

using lineup::BlockGrid;

TEST(BlockGrid, StartsABlockEveryMillisecondAt48Kilohertz) {
    const BlockGrid grid(48000);
    EXPECT_EQ(grid.BlockAt(0).start, 0);
    EXPECT_EQ(grid.BlockAt(47).start, 0);
    EXPECT_EQ(grid.BlockAt(48).start, 48);
    EXPECT_EQ(grid.BlockAt(0).end, 48);
    EXPECT_EQ(grid.BlockAt(48).end, 96);
}

TEST(BlockGrid, GoesOnBeforeZero) {
    const BlockGrid grid(48000);
    EXPECT_EQ(grid.BlockAt(-1).start, -48);
    EXPECT_EQ(grid.BlockAt(-1).end, 0);
    EXPECT_EQ(grid.BlockAt(-48).start, -48);
    EXPECT_EQ(grid.BlockAt(-49).start, -96);
}

TEST(BlockGrid, TakesTheFewestMillisecondsThatAreWholeSamples) {
    struct Case {
        float rateHz;
        std::int64_t samples;
    };
    for (const Case& of : {Case{8000, 8}, Case{22050, 441}, Case{32000, 32}, Case{44100, 441}, Case{48000, 48},
                           Case{88200, 441}, Case{96000, 96}, Case{176400, 882}, Case{192000, 192}}) {
        const BlockGrid grid(of.rateHz);
        for (std::int64_t block = -3; block < 3; ++block) {
            EXPECT_EQ(grid.BlockAt(block * of.samples + of.samples / 2).start, block * of.samples) << of.rateHz;
        }
    }
}

TEST(BlockGrid, BeginsWithTheFirstSampleOfTenMillisecondsWhereNoneAreWhole) {
    const BlockGrid grid(11025);  // 110.25 samples a block
    EXPECT_EQ(grid.BlockAt(0).end, 111);
    EXPECT_EQ(grid.BlockAt(111).end, 221);
    EXPECT_EQ(grid.BlockAt(110).start, 0);
    EXPECT_EQ(grid.BlockAt(220).start, 111);
    EXPECT_EQ(grid.BlockAt(440).start, 331);
    EXPECT_EQ(grid.BlockAt(441).start, 441);
}

// All sequences' steps begin on tenths of a second: a burst whose phase is its request's then has one phase.
TEST(BlockGrid, StartsABlockOnEveryTenthOfASecond) {
    for (const float rateHz : {8000.0F, 11025.0F, 44056.0F, 44100.0F, 47952.0F, 48000.0F, 12345.0F, 3.0F}) {
        const BlockGrid grid(rateHz);
        const std::int64_t sample = zelmediatypes::FrameRateFromHz(rateHz).Ticks();
        for (std::int64_t tenth = 0; tenth < 134; ++tenth) {
            const std::int64_t first = (tenth * zelmediatypes::kTicksPerSecond / 10 + sample - 1) / sample;
            EXPECT_EQ(grid.BlockAt(first).start, first) << rateHz;
        }
    }
}

TEST(BlockGrid, EverySampleLiesInTheBlockThatItsClipTimeNames) {
    constexpr std::int64_t kTicksPerBlock = zelmediatypes::kTicksPerSecond / 100;
    for (const float rateHz : {11025.0F, 47952.5F, 44099.0F, 12345.0F}) {
        const BlockGrid grid(rateHz);
        const auto sample = zelmediatypes::FrameRateFromHz(rateHz);
        for (std::int64_t position = -20000; position < 20000; position += 37) {
            const std::int64_t start = grid.BlockAt(position).start;
            const std::int64_t next = grid.BlockAt(position).end;
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
    EXPECT_LE(grid.BlockAt(kMax).start, kMax);
    EXPECT_EQ(grid.BlockAt(kMax).end, kMax);
    EXPECT_EQ(grid.BlockAt(kMin).start, kMin);
    EXPECT_GT(grid.BlockAt(kMin).end, kMin);
}

TEST(BlockGrid, OfARateThatIsNoneStillMovesForward) {
    for (const float rateHz : {-48000.0F, std::numeric_limits<float>::infinity(), std::nanf("")}) {
        const BlockGrid grid(rateHz);
        EXPECT_LE(grid.BlockAt(1000).start, 1000);
        EXPECT_GT(grid.BlockAt(1000).end, 1000);
    }
}

TEST(BlockGrid, NoBlockIsLongerThanItSays) {
    // The lowest float there is has no ticks for a sample: the grid is then that of 48 kHz.
    for (const float rateHz : {1e-38F, 1e-5F, 3.0F, 11025.0F, 47952.0F, 48000.0F, 1e6F}) {
        const BlockGrid grid(rateHz);
        std::int64_t longest = 0;
        std::int64_t position = -1'000'000;
        for (int block = 0; block < 40; ++block) {
            const std::int64_t next = grid.BlockAt(position).end;
            longest = std::max(longest, next - grid.BlockAt(position).start);
            position = next;
        }
        EXPECT_LE(longest, grid.LongestBlock()) << rateHz;
        EXPECT_GE(longest, grid.LongestBlock() - 1) << rateHz;
    }
}

TEST(BlockGrid, TheBlockAfterOneIsTheBlockAtItsEnd) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    for (const float rateHz : {1e-38F, 3.0F, 8000.0F, 11025.0F, 44056.0F, 44100.0F, 47952.0F, 48000.0F, 384000.0F}) {
        const BlockGrid grid(rateHz);
        for (const std::int64_t position : {std::numeric_limits<std::int64_t>::min() / 2, std::int64_t{-1'000'000},
                                            std::int64_t{0}, std::int64_t{1} << 40, kMax - 100'000, kMax}) {
            BlockGrid::Block block = grid.BlockAt(position);
            for (int i = 0; i < 300; ++i) {
                const BlockGrid::Block there = grid.BlockAt(block.end);
                block = grid.BlockAfter(block);
                ASSERT_EQ(block.start, there.start) << rateHz << " Hz, " << position;
                ASSERT_EQ(block.end, there.end) << rateHz << " Hz, " << position;
            }
        }
    }
}

}  // namespace
