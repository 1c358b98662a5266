#pragma once

#include "Apps/studio/Sound/ClipPlayback.h"
#include "Apps/studio/Sound/SinkThread.h"
#include "Apps/studio/Sound/SoundOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <chrono>
#include <functional>
#include <memory>

namespace studio {

/// Plays on a sound device. The device is fed from a thread of its own, so that a busy window is not heard, and a
/// device that does not answer does not keep the window. Failed is emitted in that thread: receive it queued.
class DeviceOutput : public SoundOutput {
    Q_OBJECT

public:
    /// `format` must be one that `device` supports, with the playback's channels and rate.
    DeviceOutput(std::shared_ptr<ClipPlayback> playback, const QAudioDevice& device, const QAudioFormat& format,
                 QObject* parent = nullptr);

    /// Plays what `makeStream` makes in the thread, which says there by its argument why it can go on no longer. Waits
    /// for its end as long as `patience`.
    using TellFailure = std::function<void(const QString& problem)>;
    using MakeStream = std::function<SinkThread::Sink(const TellFailure& tell)>;
    DeviceOutput(const MakeStream& makeStream, std::chrono::milliseconds patience, QObject* parent = nullptr);
    ~DeviceOutput() override;

    bool End() override;

private:
    struct Line;

    std::shared_ptr<Line> mLine;
    std::chrono::milliseconds mPatience;
    SinkThread mThread;
};

/// The format in which `device` is given `channels` channels (1, 2 or 6) at `rateHz`, as exact as it takes
/// them; an invalid one when it does not take them at all.
[[nodiscard]] QAudioFormat DeviceFormat(const QAudioDevice& device, int channels, int rateHz);

}  // namespace studio
