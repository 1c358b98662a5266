#include "Benchmarks/Studio/FrameMeter.h"

#include <QThread>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace bench {

namespace {

double WallMs() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double ThreadCpuMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace

// Other threads dispatch events through here too, and an event may send others.
bool FrameMeter::notify(QObject* receiver, QEvent* event) {
    if (mIsBusy || QThread::currentThread() != thread()) {
        return QApplication::notify(receiver, event);
    }
    mIsBusy = true;
    const bool endsFrame = event->type() == QEvent::UpdateRequest;
    bool result = false;
    const FrameTime taken = Measured([&] { result = QApplication::notify(receiver, event); });
    mNow.wallMs += taken.wallMs;
    mNow.cpuMs += taken.cpuMs;
    mIsBusy = false;
    if (endsFrame) {
        mLast = mNow;
        mNow = {};
        ++mFrames;
    }
    return result;
}

FrameTime FrameMeter::NextFrame() {
    const std::size_t before = mFrames;
    while (mFrames == before) {
        processEvents(QEventLoop::WaitForMoreEvents);
    }
    return mLast;
}

FrameTime Measured(const std::function<void()>& work) {
    const double wall = WallMs();
    const double cpu = ThreadCpuMs();
    work();
    return {WallMs() - wall, ThreadCpuMs() - cpu};
}

double Quantile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    const auto place = static_cast<std::size_t>(std::ceil(share * static_cast<double>(values.size())));
    return values[std::clamp<std::size_t>(place, 1, values.size()) - 1];
}

}  // namespace bench
