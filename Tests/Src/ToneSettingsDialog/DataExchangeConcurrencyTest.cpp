#include "Src/ToneSettingsDialog/ToneSettingsDialogDataExchange.h"
#include "Tests/Support/OnAllThreads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace {

using test::kThreads;
using test::OnAllThreads;

constexpr int kRounds = 2000;

class CountedExchange : public ToneSettingsDialogDataExchange {
public:
    explicit CountedExchange(std::atomic<int>& deleted) : mDeleted(deleted) {}
    ~CountedExchange() override { ++mDeleted; }

private:
    std::atomic<int>& mDeleted;
};

}  // namespace

TEST(DataExchangeReferences, AreCountedOneByOneHoweverManyThreadsTakeThem) {
    std::atomic<int> deleted = 0;
    auto* const exchange = new CountedExchange(deleted);
    exchange->AddRef();
    std::array<std::vector<std::int32_t>, kThreads> counts;
    OnAllThreads([&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            counts.at(static_cast<std::size_t>(thread)).push_back(exchange->AddRef());
        }
    });
    std::vector<std::int32_t> all;
    for (const auto& ofThread : counts) {
        EXPECT_TRUE(std::ranges::is_sorted(ofThread));
        all.insert(all.end(), ofThread.begin(), ofThread.end());
    }
    std::ranges::sort(all);
    for (std::int32_t i = 0; i < std::ssize(all); ++i) {
        ASSERT_EQ(all[static_cast<std::size_t>(i)], i + 2);  // every count once
    }
    OnAllThreads([&](int) {
        for (int round = 0; round < kRounds; ++round) {
            EXPECT_GT(exchange->Release(), 0);
        }
    });
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(exchange->Release(), 0);
    EXPECT_EQ(deleted, 1);
}

TEST(DataExchangeReferences, DeleteTheObjectOnceWhoeverLetsGoLast) {
    for (int object = 0; object < 200; ++object) {
        std::atomic<int> deleted = 0;
        std::atomic<int> last = 0;
        auto* const exchange = new CountedExchange(deleted);
        for (int thread = 0; thread < kThreads; ++thread) {
            exchange->AddRef();
        }
        OnAllThreads([&](int) {
            exchange->AddRef();
            exchange->Release();
            last += exchange->Release() == 0 ? 1 : 0;
        });
        EXPECT_EQ(deleted, 1);
        EXPECT_EQ(last, 1);
    }
}

TEST(DataExchangeReferences, MayBeCopiedConvertedAndPassedOnBetweenThreads) {
    std::atomic<int> deleted = 0;
    {
        // One reference a thread, each taken over by whichever thread comes by, through every way there is.
        std::array<Brio::BrioUnknownRef, kThreads> places;
        std::array<std::mutex, kThreads> locks;
        {
            const Brio::InterfaceRef<ToneSettingsDialogDataExchange> first(new CountedExchange(deleted));
            places.fill(*first.Get());
        }
        OnAllThreads([&](int thread) {
            Brio::BrioUnknownRef mine = [&] {
                const std::lock_guard lock(locks.at(static_cast<std::size_t>(thread)));
                return places.at(static_cast<std::size_t>(thread));
            }();
            for (int round = 0; round < kRounds; ++round) {
                const auto place = static_cast<std::size_t>(thread + round) % kThreads;
                Brio::BrioUnknownRef copy = mine;
                void* answer = nullptr;
                EXPECT_EQ(copy->QueryMap(GuidOf(static_cast<IToneSettingsDialogDataExchange*>(nullptr)), &answer), 0);
                const Brio::InterfaceRef<IToneSettingsDialogDataExchange> typed(
                    static_cast<IToneSettingsDialogDataExchange*>(answer));
                EXPECT_EQ(typed->GetBrioUnknown(), copy.Get());
                const std::lock_guard lock(locks.at(place));
                std::swap(places.at(place), copy);
                mine = std::move(copy);
            }
        });
        EXPECT_EQ(deleted, 0);
    }
    EXPECT_EQ(deleted, 1);
}
