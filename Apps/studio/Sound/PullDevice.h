#pragma once

#include "Apps/studio/Sound/ClipPlayback.h"

#include <QAudioFormat>
#include <QIODevice>
#include <memory>
#include <vector>

namespace studio {

/// A playback as the byte stream that the sound library pulls. Reading takes no lock and allocates nothing.
class PullDevice : public QIODevice {
    Q_OBJECT

public:
    /// `format` is one that BytesOf knows, with the playback's channels.
    PullDevice(std::shared_ptr<ClipPlayback> playback, QAudioFormat::SampleFormat format);

    /// Opens it in the way that reads pass straight through. Call before anything is read.
    bool Open();

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    std::shared_ptr<ClipPlayback> mPlayback;
    QAudioFormat::SampleFormat mFormat;
    std::vector<float> mScratch;
};

}  // namespace studio
