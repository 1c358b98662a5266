#pragma once

#include <QApplication>
#include <cstddef>
#include <functional>
#include <vector>

namespace bench {

/// What one frame of a window took of the thread that makes it, in milliseconds: everything that was done from
/// the frame before it up to the end of its painting, waiting left out.
struct FrameTime {
    double wallMs = 0;
    double cpuMs = 0;  ///< on a processor: what other programs take is not in it
};

/// An application that measures the frames of its window: each event that it dispatches counts, and an update
/// request ends a frame.
class FrameMeter : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Lets events happen until another frame has been made.
    FrameTime NextFrame();

    /// What has been done so far belongs to no frame.
    void Forget() { mNow = {}; }

private:
    FrameTime mNow;
    FrameTime mLast;
    std::size_t mFrames = 0;
    bool mIsBusy = false;
};

/// What `work` takes.
[[nodiscard]] FrameTime Measured(const std::function<void()>& work);

/// The `share` quantile (0.5: the median) of one or more values: the smallest that so many do not exceed.
[[nodiscard]] double Quantile(std::vector<double> values, double share);

}  // namespace bench
