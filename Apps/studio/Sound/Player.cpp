#include "Apps/studio/Sound/Player.h"

#include "Apps/studio/Sound/DeviceOutput.h"
#include "Apps/studio/Sound/SilentOutput.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <utility>

namespace studio {

namespace {

constexpr int kLookMs = 1000;
constexpr int kMostFailures = 6;   // counted: a minute to the next attempt
constexpr int kUsualChannels = 2;  // of a device that does not say

}  // namespace

// Where a clip's sound goes: a device and its format, or nowhere.
struct Player::Route {
    QAudioDevice device;
    QAudioFormat format;  // invalid: silence
    SpeakerMap speakers;
    QString problem;

    // What tells one place to play from another; empty for silence.
    [[nodiscard]] QByteArray Id() const { return format.isValid() ? device.id() : QByteArray(); }
};

Player::Player(QObject* parent) : QObject(parent) {
    connect(&mDevices, &QMediaDevices::audioOutputsChanged, this, &Player::LookForDevices);
    connect(&mLook, &QTimer::timeout, this, &Player::LookForDevices);
    mLook.start(kLookMs);
}

Player::~Player() = default;

// Looks now and again, too: Qt 6.4 does not always say that devices come and go, or that another one has become the
// default. Other devices are a fresh chance; the same ones get one after a second, after two, after four, unless
// one did not answer: each try would cost a thread.
void Player::LookForDevices() {
    QByteArrayList devices = {QMediaDevices::defaultAudioOutput().id()};
    for (const QAudioDevice& device : QMediaDevices::audioOutputs()) {
        devices += device.id();
    }
    if (devices != mKnownDevices) {
        mKnownDevices = devices;
        mFailures = 0;
        mProblem.clear();
    } else if (!mProblem.isEmpty() && !mDoesNotAnswer && --mLooksUntilRetry <= 0) {
        mProblem.clear();
    }
    if (IsPlaying() && FindRoute().Id() != mPlayingOn) {
        Restart();
    }
    const QString sound = SoundText();
    if (sound != mKnownSound) {
        mKnownSound = sound;
        Q_EMIT SoundChanged();
    }
}

QAudioDevice Player::Device() const {
    const auto devices = QMediaDevices::audioOutputs();
    const auto wanted = std::ranges::find(devices, mWantedDevice, &QAudioDevice::id);
    return wanted == devices.end() ? QMediaDevices::defaultAudioOutput() : *wanted;
}

Player::Route Player::FindRoute() const {
    const QAudioDevice device = Device();
    const int preferred = device.preferredFormat().channelCount();
    const int deviceChannels = device.isNull() ? mChannels : preferred > 0 ? preferred : kUsualChannels;
    Route route{device, {}, SpeakerMap(mChannels, deviceChannels), mProblem};
    if (!mProblem.isEmpty() || !mMakeFeed) {
        return route;
    }
    if (device.isNull()) {
        route.problem = tr("No sound device");
        return route;
    }
    const int rateHz = static_cast<int>(mRateHz);
    route.format = DeviceFormat(device, route.speakers.Outputs(), rateHz);
    if (!route.format.isValid()) {
        route.problem = tr("%1 does not play %2 Hz").arg(device.description()).arg(rateHz);
    }
    return route;
}

void Player::SetClip(std::shared_ptr<const lineup::Clip> clip, std::int64_t lengthSamples) {
    const int channels = clip->NumChannels();
    const double rateHz = clip->SampleRate();
    SetSound(
        channels, rateHz, [clip = std::move(clip)] { return std::make_unique<ClipFeed>(clip); }, lengthSamples);
}

void Player::SetSound(int channels, double rateHz, MakeFeed makeFeed, std::int64_t lengthSamples) {
    const double seconds = !mMakeFeed ? 0 : static_cast<double>(Position()) / mRateHz;
    const bool wasPlaying = IsPlaying();
    Stop();
    mChannels = channels;
    mRateHz = rateHz;
    mMakeFeed = std::move(makeFeed);
    mLength = std::max<std::int64_t>(lengthSamples, 1);
    mParked = std::clamp<std::int64_t>(std::llround(seconds * mRateHz), 0, mLength);
    if (wasPlaying) {
        Start(mParked);
    }
    Q_EMIT StateChanged();
    Q_EMIT PositionJumped();
    Q_EMIT SoundChanged();
}

void Player::Start(std::int64_t from) {
    const Route route = FindRoute();
    mPlayback = std::make_shared<ClipPlayback>(mMakeFeed(), route.speakers, mLength, from);
    mPlayback->SetLoop(mLoop);
    mPlayback->Loudness().Begin(Gain());
    mPlayingOn = route.Id();
    if (route.format.isValid()) {
        mDoesNotAnswer = false;
        mOutput = std::make_unique<DeviceOutput>(mPlayback, route.device, route.format);
        connect(mOutput.get(), &SoundOutput::Failed, this, &Player::OutputFailed, Qt::QueuedConnection);
    } else {
        mOutput = std::make_unique<SilentOutput>(mPlayback);
    }
}

void Player::Stop() {
    if (mOutput != nullptr && !mOutput->End()) {
        mDoesNotAnswer = true;
    }
    mOutput.reset();
    mPlayback.reset();
}

void Player::Restart() {
    const std::int64_t position = Position();
    Stop();
    Start(position);
}

void Player::OutputFailed(const QString& problem) {
    if (mOutput != nullptr && sender() == mOutput.get()) {  // else of a playback that is over
        GoOnInSilence(problem);
    }
}

void Player::GoOnInSilence(const QString& problem) {
    mProblem = problem;
    mLooksUntilRetry = 1 << mFailures;
    mFailures = std::min(mFailures + 1, kMostFailures);
    Restart();
    Q_EMIT SoundChanged();
}

void Player::Play() {
    if (!mMakeFeed || IsPlaying()) {
        return;
    }
    mFailures = 0;
    mProblem.clear();
    Start(mParked >= mLength ? 0 : mParked);
    Q_EMIT StateChanged();
}

void Player::Pause() {
    if (IsPlaying()) {
        mParked = Position();
        Stop();
        Q_EMIT StateChanged();
    }
}

void Player::Seek(std::int64_t sample) {
    mParked = std::clamp<std::int64_t>(sample, 0, mLength);
    if (mPlayback != nullptr) {
        mPlayback->Seek(mParked);
    }
    Q_EMIT PositionJumped();
}

void Player::SetLoop(bool loop) {
    mLoop = loop;
    if (mPlayback != nullptr) {
        mPlayback->SetLoop(loop);
    }
    Q_EMIT StateChanged();
}

void Player::SetVolume(float gain) {
    mVolume = std::clamp(gain, 0.0F, 1.0F);
    if (mPlayback != nullptr) {
        mPlayback->Loudness().Set(Gain());
    }
    Q_EMIT SoundChanged();
}

void Player::SetMuted(bool muted) {
    mMuted = muted;
    SetVolume(mVolume);
}

void Player::UseDevice(const QByteArray& id) {
    mWantedDevice = id;
    mFailures = 0;
    mProblem.clear();
    LookForDevices();
}

std::int64_t Player::Position() const {
    return mPlayback == nullptr ? mParked : mPlayback->Playhead();
}

void Player::Tick() {
    if (mPlayback != nullptr && mPlayback->Ended()) {
        Pause();
    } else if (!mPlayingOn.isEmpty() && mPlayback != nullptr && mPlayback->IsStalled()) {
        GoOnInSilence(tr("The sound device does not respond"));
    }
}

QString Player::SoundText() const {
    const Route route = FindRoute();
    if (!route.problem.isEmpty()) {
        return tr("%1: playing in silence").arg(route.problem);
    }
    if (mMuted) {
        return tr("%1: muted").arg(route.device.description());
    }
    const QString notice = QCoreApplication::translate("Speakers", route.speakers.Notice().c_str());
    return notice.isEmpty() ? route.device.description() : tr("%1 \u2014 %2").arg(route.device.description(), notice);
}

bool Player::SoundIsChanged() const {
    const Route route = FindRoute();
    return mMuted || !route.problem.isEmpty() || !route.speakers.Notice().empty();
}

}  // namespace studio
