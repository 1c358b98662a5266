#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

namespace test {

/// A thread that does nothing but sleep until one time after the other, as far apart as datagrams are: how late this
/// machine wakes who is punctual. What it was late too is not the sender's.
class Sleeper {
public:
    static constexpr std::int64_t kLateNs = 2'000'000;

    explicit Sleeper(std::chrono::nanoseconds apart)
        : mThread([this, apart](const std::stop_token& stop) {
              auto due = std::chrono::steady_clock::now();
              while (!stop.stop_requested()) {
                  due += apart;
                  std::this_thread::sleep_until(due);
                  const std::int64_t lateNs = (std::chrono::steady_clock::now() - due).count();
                  worstNs = lateNs > worstNs ? lateNs : worstNs.load();
                  late += lateNs > kLateNs ? 1 : 0;
              }
          }) {}

    std::atomic<std::int64_t> late = 0;
    std::atomic<std::int64_t> worstNs = 0;

private:
    std::jthread mThread;
};

}  // namespace test
