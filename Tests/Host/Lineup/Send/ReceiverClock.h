#pragma once

#include <lineup/SendClock.h>
#include "Tests/Host/Lineup/Send/Loopback.h"

#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace test {

/// A clock of simulated time that goes on as the receiver of datagrams at a port of this machine takes them: none is
/// lost that waits in his queue.
class ReceiverClock final : public lineup::SendClock {
public:
    /// Waits for nobody once `isOver` says so.
    ReceiverClock(const std::string& port, std::function<bool()> isOver)
        : mPort(static_cast<std::uint16_t>(std::stoi(port))), mIsOver(std::move(isOver)) {}

    [[nodiscard]] std::int64_t NowNs() override { return mNow; }
    void WaitUntilNs(std::int64_t ns) override {
        constexpr int kAtOnce = 32;  // datagrams
        if (mWaits++ % kAtOnce == 0) {
            while (BytesWaiting(mPort).value_or(kMostWaiting + 1) > kMostWaiting && !mIsOver()) {
                std::this_thread::yield();
            }
        }
        mNow = mNow < ns ? ns : mNow;
    }

private:
    std::uint16_t mPort;
    std::function<bool()> mIsOver;
    std::int64_t mNow = 0;
    int mWaits = 0;
};

}  // namespace test
