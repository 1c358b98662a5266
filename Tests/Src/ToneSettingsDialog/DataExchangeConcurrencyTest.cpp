#include "Src/ToneSettingsDialog/ToneSettingsDialogDataExchange.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

class CountedExchange : public ToneSettingsDialogDataExchange {
public:
    explicit CountedExchange(int& deleted) : mDeleted(deleted) {}
    ~CountedExchange() override { ++mDeleted; }

private:
    int& mDeleted;
};

}  // namespace

TEST(ToneSettingsDialogDataExchange, IsDeletedOnceHoweverManyThreadsShareIt) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 1000;
    int deleted = 0;
    auto* const exchange = new CountedExchange(deleted);
    exchange->AddRef();
    for (int i = 0; i < kThreads; ++i) {
        exchange->AddRef();
    }
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([exchange] {
            for (int round = 0; round < kRounds; ++round) {
                exchange->AddRef();
                exchange->Release();
            }
            exchange->Release();
        });
    }
    exchange->Release();
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(deleted, 1);
}
