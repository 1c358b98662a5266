#pragma once

#include <lineup/SendClock.h>
#include "Tests/Host/Lineup/Send/Loopback.h"

#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace test {

/// A clock of simulated time that goes on as the receivers of datagrams at ports of this machine take them: none is
/// lost that waits in a queue.
class ReceiverClock final : public lineup::SendClock {
public:
    /// Waits for nobody once `isOver` says so.
    ReceiverClock(std::vector<std::string> ports, std::function<bool()> isOver)
        : mPorts(std::move(ports)), mIsOver(std::move(isOver)) {}

    [[nodiscard]] std::int64_t NowNs() override { return mNow; }
    void WaitUntilNs(std::int64_t ns) override {
        constexpr int kAtOnce = 32;  // datagrams
        if (mWaits++ % kAtOnce == 0) {
            while (IsFull() && !mIsOver()) {
                std::this_thread::yield();
            }
        }
        mNow = mNow < ns ? ns : mNow;
    }

private:
    [[nodiscard]] bool IsFull() const {
        return std::ranges::any_of(mPorts, [](const std::string& port) {
            return BytesWaiting(static_cast<std::uint16_t>(std::stoi(port))).value_or(kMostWaiting + 1) > kMostWaiting;
        });
    }

    std::vector<std::string> mPorts;
    std::function<bool()> mIsOver;
    std::int64_t mNow = 0;
    int mWaits = 0;
};

}  // namespace test
