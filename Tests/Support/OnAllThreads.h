#pragma once

#include <latch>
#include <thread>
#include <vector>

namespace test {

inline constexpr int kThreads = 8;

/// Runs `work(thread)` on kThreads threads, all of them let go at once, and waits for them.
template <class Work>
void OnAllThreads(Work work) {
    std::latch start(kThreads);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&start, &work, thread] {
            start.arrive_and_wait();
            work(thread);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace test
