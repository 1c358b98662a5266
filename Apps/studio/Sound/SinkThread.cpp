#include "Apps/studio/Sound/SinkThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace studio {

namespace {

// Counts the threads that are left behind. Registered later than the static objects of the libraries that were loaded
// by then, so it is called before those are destroyed.
class LeftBehind {
public:
    static void Add() {
        [[maybe_unused]] static const int registered = on_exit(EndAtOnce, nullptr);
        ++Count();
    }
    static void Remove() { --Count(); }

private:
    static std::atomic<int>& Count() {
        static std::atomic<int> count = 0;
        return count;
    }
    static void EndAtOnce(int status, void* /*unused*/) {
        if (Count() > 0) {
            std::fflush(nullptr);
            std::_Exit(status);
        }
    }
};

}  // namespace

struct SinkThread::State {
    std::mutex mutex;
    std::condition_variable hasChanged;
    QEventLoop* loop = nullptr;  // while it may be told to quit
    bool isToEnd = false;
    bool hasEnded = false;
    bool isLeftBehind = false;
};

SinkThread::SinkThread(std::function<Sink()> makeSink)
    : mState(std::make_shared<State>()),
      mThread([state = mState, makeSink = std::move(makeSink)] { Run(*state, makeSink); }) {}

SinkThread::~SinkThread() {
    End(std::chrono::milliseconds(0));
}

void SinkThread::Run(State& state, const std::function<Sink()>& makeSink) {
    {
        QEventLoop loop;
        {
            const std::lock_guard lock(state.mutex);
            state.loop = &loop;
        }
        const Sink sink = makeSink();
        std::unique_lock lock(state.mutex);
        if (!state.isToEnd) {
            lock.unlock();
            loop.exec();
            lock.lock();
        }
        state.loop = nullptr;
    }
    const std::lock_guard lock(state.mutex);
    state.hasEnded = true;
    if (state.isLeftBehind) {
        LeftBehind::Remove();
    }
    state.hasChanged.notify_one();
}

bool SinkThread::End(std::chrono::milliseconds patience) {
    if (!mThread.joinable()) {
        return true;
    }
    std::unique_lock lock(mState->mutex);
    mState->isToEnd = true;
    if (mState->loop != nullptr) {
        QCoreApplication::postEvent(mState->loop, new QEvent(QEvent::Quit));  // is kept for a loop that is yet to run
    }
    if (mState->hasChanged.wait_for(lock, patience, [this] { return mState->hasEnded; })) {
        lock.unlock();
        mThread.join();
        return true;
    }
    mState->isLeftBehind = true;
    LeftBehind::Add();
    mThread.detach();
    return false;
}

}  // namespace studio
