#include "Apps/studio/Sound/DeviceOutput.h"

#include "Apps/studio/Sound/PullDevice.h"

#include <QAudioSink>
#include <QCoreApplication>
#include <mutex>
#include <utility>

namespace studio {

namespace {

constexpr int kBuffersPerSecond = 8;          // how much the device holds: short enough for a seek to be heard at once
constexpr std::chrono::seconds kPatience(1);  // with a device at its end: the window waits meanwhile

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

// The device's stream, from its making to its end.
class Stream : public QObject {
public:
    Stream(std::shared_ptr<ClipPlayback> playback, const QAudioDevice& device, const QAudioFormat& format,
           DeviceOutput::TellFailure tell)
        : mTell(std::move(tell)), mPull(playback, format.sampleFormat()), mSink(device, format) {
        mPull.Open();
        mSink.setBufferSize(format.bytesForFrames(format.sampleRate() / kBuffersPerSecond));
        const auto tellLatency = [&] {
            playback->SetLatency(format.framesForBytes(static_cast<int>(mSink.bufferSize())));
        };
        tellLatency();
        connect(&mSink, &QAudioSink::stateChanged, this, [this] { CheckState(); });
        mSink.start(&mPull);
        tellLatency();
        CheckState();
    }
    ~Stream() override {
        mSink.disconnect(this);
        mSink.reset();
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

private:
    // A device that was kept waiting goes on by itself; one that has stopped does not.
    void CheckState() {
        if (!mFailed && mSink.state() == QAudio::StoppedState) {
            mFailed = true;
            mTell(Sentence(mSink.error()));
        }
    }

    DeviceOutput::TellFailure mTell;
    PullDevice mPull;
    QAudioSink mSink;
    bool mFailed = false;
};

}  // namespace

// How the stream reaches the output, as long as there is one.
struct DeviceOutput::Line {
    explicit Line(DeviceOutput* to) : output(to) {}
    std::mutex mutex;
    DeviceOutput* output;
};

DeviceOutput::DeviceOutput(std::shared_ptr<ClipPlayback> playback, const QAudioDevice& device,
                           const QAudioFormat& format, QObject* parent)
    : DeviceOutput([playback = std::move(playback), device, format](
                       const TellFailure& tell) { return std::make_shared<Stream>(playback, device, format, tell); },
                   kPatience, parent) {}

DeviceOutput::DeviceOutput(const MakeStream& makeStream, std::chrono::milliseconds patience, QObject* parent)
    : SoundOutput(parent),
      mLine(std::make_shared<Line>(this)),
      mPatience(patience),
      mThread([makeStream, line = mLine] {
          return makeStream([line](const QString& problem) {
              const std::lock_guard lock(line->mutex);
              if (line->output != nullptr) {
                  Q_EMIT line->output->Failed(problem);
              }
          });
      }) {}

DeviceOutput::~DeviceOutput() {
    DeviceOutput::End();
}

bool DeviceOutput::End() {
    {
        const std::lock_guard lock(mLine->mutex);
        mLine->output = nullptr;
    }
    return mThread.End(mPatience);
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
