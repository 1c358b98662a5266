#include "Host/Interface/Core/SmallBlockAllocator.h"
#include "Tests/Src/ToneGenerator/GeneratorRun.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

// This program's own small-block allocator stands in front of the host's: it counts blocks and can run out.
namespace {

long long gBlocksTaken = 0;
long long gBlocksOutstanding = 0;
long long gBlocksLeft = std::numeric_limits<long long>::max();

}  // namespace

namespace zelcore::utility::SmallBlockAllocator {

void* Allocate(std::size_t bytes) {
    if (gBlocksLeft == 0) {
        throw std::bad_alloc();
    }
    --gBlocksLeft;
    ++gBlocksTaken;
    ++gBlocksOutstanding;
    return std::malloc(bytes);
}

void Deallocate(void* block, std::size_t /*bytes*/) noexcept {
    if (block != nullptr) {
        --gBlocksOutstanding;
        std::free(block);
    }
}

}  // namespace zelcore::utility::SmallBlockAllocator

namespace {

using oracle::Ident;
using test::GuardedChannels;
using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

constexpr std::int64_t kSample = oracle::kTicksAt48kHz;

class ToneGeneratorMemory : public testing::Test {
protected:
    void SetUp() override { Allow(std::numeric_limits<long long>::max()); }
    void TearDown() override { EXPECT_EQ(gBlocksOutstanding, 0) << "blocks were not given back"; }

    static void Allow(long long blocks) {
        gBlocksTaken = 0;
        gBlocksLeft = blocks;
    }

    const ToneGenerator mGenerator{FrameRate(kSample), 6};
};

TEST_F(ToneGeneratorMemory, IsNotTakenForOneChannelOrForAListThatTheCallerHas) {
    GuardedChannels channels(2, 10);
    const ToneGenerator::ChannelList list = {0, 1};
    Allow(0);
    mGenerator.GenerateTone(TickTime(0), 1000.0F, 0.25F, channels[0].Data(), 10, false);
    mGenerator.GenerateSilence(channels[0].Data(), 10);
    mGenerator.GenerateSilenceAcrossChannels(list, channels.Pointers(), 2, 0, 10);
    mGenerator.GenerateTonesAcrossChannels(list, TickTime(0), 1000.0F, 0.25F, channels.Pointers(), 2, 0, 10, false);
    EXPECT_EQ(channels[1].UnwrittenSamples(), 0U);
}

TEST_F(ToneGeneratorMemory, OfOneListIsTakenForAllChannels) {
    GuardedChannels channels(6, 10);
    mGenerator.GenerateTonesAcrossChannels(TickTime(0), 1000.0F, 0.25F, channels.Pointers(), 6, 10, false);
    EXPECT_EQ(gBlocksTaken, 1);
}

TEST_F(ToneGeneratorMemory, IsNotTakenForTheStereoIdent) {
    Allow(0);
    GuardedChannels channels = test::Generate(oracle::kStereo1000, {kSample, 0, 144000});
    EXPECT_EQ(channels[0].UnwrittenSamples(), 0U);
}

TEST_F(ToneGeneratorMemory, IsGivenBackAfterEveryPieceOfAnIdent) {
    for (const Ident& ident : {oracle::kMultichannel, oracle::kBlits}) {
        const GuardedChannels channels = test::Generate(ident, {48 * kSample * 1000, 0, 300, true});
        EXPECT_GT(gBlocksTaken, 0);
        EXPECT_EQ(gBlocksOutstanding, 0);
    }
}

TEST_F(ToneGeneratorMemory, ThatRunsOutForAllChannelsIsReportedBeforeAnythingIsWritten) {
    GuardedChannels channels(2, 10);
    Allow(0);
    EXPECT_THROW(mGenerator.GenerateTonesAcrossChannels(TickTime(0), 1000.0F, 0.25F, channels.Pointers(), 2, 10, false),
                 std::bad_alloc);
    EXPECT_EQ(channels[0].UnwrittenSamples(), 10U);
}

TEST_F(ToneGeneratorMemory, ThatRunsOutAnywhereInAnIdentIsReportedAndGivenBack) {
    // A cycle of at most 134 pieces, two lists each at most: every one of them fails once.
    for (const Ident& ident : {oracle::kMultichannel, oracle::kBlits}) {
        const oracle::Request cycle{kSample * 480, 0, ident.CycleTicks() / (kSample * 480), true};
        Allow(std::numeric_limits<long long>::max());
        (void)test::Generate(ident, cycle);
        const long long needed = gBlocksTaken;
        for (long long blocks = 0; blocks < needed; ++blocks) {
            Allow(blocks);
            EXPECT_THROW((void)test::Generate(ident, cycle), std::bad_alloc);
            EXPECT_EQ(gBlocksOutstanding, 0);
        }
    }
}

TEST_F(ToneGeneratorMemory, ThatRunsOutBeforeAMultichannelBurstLeavesTheBurstUnwritten) {
    GuardedChannels channels(test::kBufferCount, 100);
    Allow(0);
    EXPECT_THROW(test::Generate(oracle::kMultichannel, {kSample, 168000 * kSample, 100}, channels), std::bad_alloc);
    EXPECT_TRUE(test::NothingElseIsWritten(channels, 0));
}

}  // namespace
