#pragma once

#include "Apps/studio/Sound/ClipPlayback.h"
#include "Apps/studio/Sound/SoundOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QThread>
#include <memory>

namespace studio {

/// Plays on a sound device. The device is fed from a thread of its own, so that a busy window is not heard.
class DeviceOutput : public SoundOutput {
    Q_OBJECT

public:
    /// `format` must be one that `device` supports, with the playback's channels and rate.
    DeviceOutput(std::shared_ptr<ClipPlayback> playback, const QAudioDevice& device, const QAudioFormat& format,
                 QObject* parent = nullptr);
    ~DeviceOutput() override;

private:
    QThread mThread;
};

/// The format in which `device` is given `channels` channels (1, 2 or 6) at `rateHz`, as exact as it takes
/// them; an invalid one when it does not take them at all.
[[nodiscard]] QAudioFormat DeviceFormat(const QAudioDevice& device, int channels, int rateHz);

}  // namespace studio
