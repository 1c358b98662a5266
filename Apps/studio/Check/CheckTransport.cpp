#include "Apps/studio/Check/CheckTransport.h"

#include "Apps/studio/Check/RecordingFeed.h"
#include "Apps/studio/Check/RecordingLanes.h"

#include <QFile>
#include <cmath>

namespace studio {

namespace {

constexpr int kFrameMs = 16;

}  // namespace

CheckTransport::CheckTransport(QObject* parent) : QObject(parent) {
    connect(&mPlayer, &Player::StateChanged, this, &CheckTransport::TakeState);
    connect(&mMovie, &RecordingMovie::Shown, this, &CheckTransport::Shown);
    mFrames.setTimerType(Qt::PreciseTimer);
    connect(&mFrames, &QTimer::timeout, this, &CheckTransport::Tick);
}

void CheckTransport::SetRecording(const QString& file, const lineup::CheckReport& report) {
    mPlayer.Pause();
    mFile = file;
    mRateHz = SoundRate(report);
    mHasPictures = report.picture.has_value();
    mCanPlay = SoundSamples(report) > 0;
    if (mCanPlay) {
        const auto inputs = static_cast<int>(report.sound->lanes.found.size());
        const std::int64_t length = SoundSamples(report);
        const auto makeFeed = [name = QFile::encodeName(file).toStdString(), inputs, rateHz = mRateHz, length] {
            return std::make_unique<RecordingFeed>(name, inputs, rateHz, length);
        };
        mPlayer.SetSound(inputs, mRateHz, makeFeed, length);
    }
}

void CheckTransport::Toggle() {
    if (mCanPlay) {
        mPlayer.Toggle();
    }
}

void CheckTransport::GoTo(double seconds) {
    mPlayer.Seek(std::llround(seconds * mRateHz));
    if (IsPlaying() && mHasPictures) {
        mMovie.Play(mFile, seconds);
    }
}

void CheckTransport::TakeState() {
    if (IsPlaying() == mFrames.isActive()) {
        return;
    }
    if (IsPlaying()) {
        mSinceTick.start();
        mFrames.start(kFrameMs);
        if (mHasPictures) {
            mMovie.Play(mFile, Place());
        }
    } else {
        mFrames.stop();
        mMovie.Stop();
        Q_EMIT Moved(Place(), nullptr, 0);
    }
    Q_EMIT StateChanged(IsPlaying());
}

void CheckTransport::Tick() {
    mMovie.SetPlace(Place());
    if (ClipPlayback* const playback = mPlayer.Playback()) {
        Q_EMIT Moved(Place(), &playback->Peaks(), static_cast<double>(mSinceTick.restart()) / 1000);
    }
    mPlayer.Tick();
}

}  // namespace studio
