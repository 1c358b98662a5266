#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace studio {

/// A thread with an event loop for a sound library, of which a call may never come back: Qt 6.8 waits for ever for a
/// stream that PulseAudio has refused. Then the thread is left behind, and ends by itself if the call comes back after
/// all. While there is such a thread, the program ends without destroying its static objects, of which the sound
/// library's would wait for it.
class SinkThread {
public:
    /// What sounds until it is destroyed. Made and destroyed in the thread, and served by its event loop.
    using Sink = std::shared_ptr<void>;

    explicit SinkThread(std::function<Sink()> makeSink);

    /// Leaves behind what has not been ended.
    ~SinkThread();
    SinkThread(const SinkThread&) = delete;
    SinkThread& operator=(const SinkThread&) = delete;

    /// Ends the thread. False: it did not end within `patience`, and is left behind.
    bool End(std::chrono::milliseconds patience);

private:
    struct State;
    static void Run(State& state, const std::function<Sink()>& makeSink);

    std::shared_ptr<State> mState;  // the thread's, too
    std::thread mThread;
};

}  // namespace studio
