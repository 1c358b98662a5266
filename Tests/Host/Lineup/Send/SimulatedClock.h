#pragma once

#include <lineup/SendClock.h>

#include <functional>

namespace test {

/// A clock that nobody has to wait for: waiting makes it the time that was waited for, or later where `stalls` says so.
class SimulatedClock final : public lineup::SendClock {
public:
    explicit SimulatedClock(std::int64_t startNs = 0) : now(startNs) {}

    [[nodiscard]] std::int64_t NowNs() override { return now; }
    void WaitUntilNs(std::int64_t ns) override {
        if (onWait) {
            onWait(ns);
        }
        now = now < ns ? ns : now;
    }

    std::int64_t now;
    std::function<void(std::int64_t ns)> onWait;  ///< before the time is what was waited for; may set `now`
};

}  // namespace test
