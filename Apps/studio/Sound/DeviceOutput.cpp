#include "Apps/studio/Sound/DeviceOutput.h"

#include "Apps/studio/Sound/PullDevice.h"
#include "Apps/studio/Sound/SampleConversion.h"

#include <QAudioSink>
#include <QCoreApplication>

namespace studio {

namespace {

constexpr int kBuffersPerSecond = 8;  // how much the device holds: short enough for a seek to be heard at once

QString Sentence(QAudio::Error error) {
    switch (error) {
        case QAudio::OpenError:
            return QCoreApplication::translate("Sound", "The sound device cannot be opened");
        case QAudio::UnderrunError:
            return QCoreApplication::translate("Sound", "The sound device has run dry");
        default:
            return QCoreApplication::translate("Sound", "The sound device has stopped");
    }
}

// Lives in the output's thread: there the sound library pulls.
class Feeder : public QObject {
public:
    Feeder(std::shared_ptr<ClipPlayback> playback, QAudioDevice device, const QAudioFormat& format,
           DeviceOutput& output)
        : mPlayback(std::move(playback)), mDevice(std::move(device)), mFormat(format), mOutput(output) {}

    void Start() {
        mPull = std::make_unique<PullDevice>(mPlayback, mFormat.sampleFormat());
        mPull->Open();
        mSink = std::make_unique<QAudioSink>(mDevice, mFormat);
        mSink->setBufferSize(mFormat.bytesForFrames(mFormat.sampleRate() / kBuffersPerSecond));
        mPlayback->SetLatency(mFormat.framesForBytes(static_cast<int>(mSink->bufferSize())));
        connect(mSink.get(), &QAudioSink::stateChanged, this, [this] { CheckState(); });
        mSink->start(mPull.get());
        mPlayback->SetLatency(mFormat.framesForBytes(static_cast<int>(mSink->bufferSize())));
        CheckState();
    }

    void Stop() {
        if (mSink != nullptr) {
            mSink->disconnect(this);
            mSink->reset();
            mSink.reset();
            mPull.reset();
        }
    }

private:
    // A device that was kept waiting goes on by itself; one that has stopped does not.
    void CheckState() {
        if (!mFailed && mSink->state() == QAudio::StoppedState) {
            mFailed = true;
            Q_EMIT mOutput.Failed(Sentence(mSink->error()));
        }
    }

    std::shared_ptr<ClipPlayback> mPlayback;
    QAudioDevice mDevice;
    QAudioFormat mFormat;
    DeviceOutput& mOutput;
    std::unique_ptr<PullDevice> mPull;
    std::unique_ptr<QAudioSink> mSink;
    bool mFailed = false;
};

}  // namespace

DeviceOutput::DeviceOutput(std::shared_ptr<ClipPlayback> playback, const QAudioDevice& device,
                           const QAudioFormat& format, QObject* parent)
    : SoundOutput(parent) {
    auto* const feeder = new Feeder(std::move(playback), device, format, *this);
    feeder->moveToThread(&mThread);
    connect(&mThread, &QThread::started, feeder, [feeder] { feeder->Start(); });
    // Emitted in the thread itself, when its event loop has ended.
    connect(
        &mThread, &QThread::finished, feeder, [feeder] { feeder->Stop(); }, Qt::DirectConnection);
    connect(&mThread, &QThread::finished, feeder, &QObject::deleteLater);
    mThread.setObjectName("sound");
    mThread.start(QThread::TimeCriticalPriority);
}

DeviceOutput::~DeviceOutput() {
    mThread.quit();
    mThread.wait();
}

QAudioFormat DeviceFormat(const QAudioDevice& device, int channels, int rateHz) {
    QAudioFormat format;
    format.setSampleRate(rateHz);
    format.setChannelConfig(channels == 6   ? QAudioFormat::ChannelConfigSurround5Dot1
                            : channels == 2 ? QAudioFormat::ChannelConfigStereo
                                            : QAudioFormat::ChannelConfigMono);
    for (const auto samples : {QAudioFormat::Float, QAudioFormat::Int32, QAudioFormat::Int16}) {
        format.setSampleFormat(samples);
        if (device.isFormatSupported(format)) {
            return format;
        }
    }
    return {};
}

}  // namespace studio
