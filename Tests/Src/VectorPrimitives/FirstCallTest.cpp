#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/VectorPrimitives/VectorPrimitives.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace {

std::int32_t BestIndex() {
    ippSafeInit();
    return ippJumpIndexForMergedLibs;
}

using Four = std::array<float, 4>;
constexpr Four kSource = {1.0F, -2.0F, 3.0F, -4.0F};

// Each of the three as the first call of a process.
bool CopyWorks() {
    Four result = {};
    return ippsCopy_32f(kSource.data(), result.data(), 4) == ippStsNoErr && result == kSource;
}
bool ZeroWorks() {
    Four result = kSource;
    return ippsZero_32f(result.data(), 4) == ippStsNoErr && result == Four{};
}
bool MultiplyWorks() {
    Four result = {};
    return ippsMulC_32f(kSource.data(), 2.0F, result.data(), 4) == ippStsNoErr &&
           result == Four{2.0F, -4.0F, 6.0F, -8.0F};
}
constexpr std::array<bool (*)(), 3> kCalls = {CopyWorks, ZeroWorks, MultiplyWorks};

TEST(FirstCall, FindsTheIndexUnsetWhenTheProcessStarts) {
    EXPECT_EQ(ippJumpIndexForMergedLibs, kVectorNotInitialised);  // each test is a process of its own
}

TEST(FirstCall, SetsTheIndexAndThenDoesItsWork) {
    const std::int32_t best = BestIndex();
    for (const auto& call : kCalls) {
        ippJumpIndexForMergedLibs = kVectorNotInitialised;
        EXPECT_TRUE(call());
        EXPECT_EQ(ippJumpIndexForMergedLibs, best);
    }
}

TEST(FirstCall, StillAnswersWrongArgumentsWithTheirStatus) {
    Four memory = kSource;
    ippJumpIndexForMergedLibs = kVectorNotInitialised;
    EXPECT_EQ(ippsCopy_32f(nullptr, memory.data(), 0), ippStsNullPtrErr);
    ippJumpIndexForMergedLibs = kVectorNotInitialised;
    EXPECT_EQ(ippsZero_32f(memory.data(), 0), ippStsSizeErr);
    ippJumpIndexForMergedLibs = kVectorNotInitialised;
    EXPECT_EQ(ippsMulC_32f(memory.data(), 2.0F, nullptr, -1), ippStsNullPtrErr);
    EXPECT_EQ(memory, kSource);
}

TEST(FirstCall, LeavesAnIndexThatIsSetAlone) {
    ippJumpIndexForMergedLibs = kVectorLowest;
    for (const auto& call : kCalls) {
        EXPECT_TRUE(call());
        EXPECT_EQ(ippJumpIndexForMergedLibs, kVectorLowest);
    }
}

TEST(FirstCall, MayBeMadeByEightThreadsAtOnce) {
    constexpr std::size_t kThreads = 8;
    const std::int32_t best = BestIndex();
    for (int round = 0; round < 50; ++round) {
        ippJumpIndexForMergedLibs = kVectorNotInitialised;
        std::latch start(kThreads);
        std::atomic<int> worked = 0;
        {
            std::vector<std::jthread> threads;
            for (std::size_t t = 0; t < kThreads; ++t) {
                threads.emplace_back([&, t] {
                    start.arrive_and_wait();
                    worked += kCalls.at(t % kCalls.size())() ? 1 : 0;
                });
            }
        }
        ASSERT_EQ(worked, static_cast<int>(kThreads));
        ASSERT_EQ(ippJumpIndexForMergedLibs, best);
    }
}

TEST(FirstCall, MayMeetCallsThatForceAnInitialisationAgain) {
    const std::int32_t best = BestIndex();
    std::latch start(2);
    std::jthread initialiser([&] {
        start.arrive_and_wait();
        for (int i = 0; i < 1000; ++i) {
            ippSafeInit();
        }
    });
    start.arrive_and_wait();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(kCalls.at(static_cast<std::size_t>(i) % kCalls.size())());
    }
    initialiser.join();
    EXPECT_EQ(ippJumpIndexForMergedLibs, best);
}

}  // namespace
