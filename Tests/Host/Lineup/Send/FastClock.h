#pragma once

#include <lineup/SendClock.h>

#include <chrono>
#include <thread>

namespace test {

/// A clock that runs so many times as fast as the machine's: what a receiver in another process takes in its time.
class FastClock final : public lineup::SendClock {
public:
    explicit FastClock(std::int64_t factor) : mFactor(factor) {}

    [[nodiscard]] std::int64_t NowNs() override {
        return std::chrono::nanoseconds(std::chrono::steady_clock::now() - mStart).count() * mFactor;
    }
    void WaitUntilNs(std::int64_t ns) override {
        std::this_thread::sleep_until(mStart + std::chrono::nanoseconds(ns / mFactor + 1));
    }

private:
    std::int64_t mFactor;
    std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
};

}  // namespace test
