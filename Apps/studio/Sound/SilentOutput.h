#pragma once

#include "Apps/studio/Sound/ClipPlayback.h"
#include "Apps/studio/Sound/SoundOutput.h"

#include <memory>
#include <stop_token>
#include <thread>
#include <vector>

namespace studio {

/// Plays without a sound device: a thread that pulls at the clock's pace, so that playhead and meters
/// move as ever.
class SilentOutput : public SoundOutput {
    Q_OBJECT

public:
    explicit SilentOutput(std::shared_ptr<ClipPlayback> playback, QObject* parent = nullptr);
    ~SilentOutput() override;

    bool End() override;

private:
    void Run(const std::stop_token& stop);

    std::shared_ptr<ClipPlayback> mPlayback;
    std::vector<float> mBuffer;
    std::jthread mThread;
};

}  // namespace studio
