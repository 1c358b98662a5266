#pragma once

#include <lineup/Clip.h>
#include "Apps/studio/Sound/ClipPlayback.h"
#include "Apps/studio/Sound/SoundOutput.h"

#include <QAudioDevice>
#include <QByteArrayList>
#include <QMediaDevices>
#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>

namespace studio {

/// The transport of the window: plays, pauses, seeks and loops the clip it was given, on the system's sound
/// device or, without one, in silence: a device that goes away while it plays is replaced by the next one or by
/// silence, and taken up again when it is back. UI thread.
class Player : public QObject {
    Q_OBJECT

public:
    explicit Player(QObject* parent = nullptr);
    ~Player() override;

    /// Takes another clip, `lengthSamples` long. What plays goes on playing, at the same time of the clip.
    void SetClip(std::shared_ptr<const lineup::Clip> clip, std::int64_t lengthSamples);

    /// The same of any sound, of which each playback asks `makeFeed` for a feed.
    using MakeFeed = std::function<std::unique_ptr<SoundFeed>()>;
    void SetSound(int channels, double rateHz, MakeFeed makeFeed, std::int64_t lengthSamples);

    void Play();  ///< from the start again when the end was reached
    void Pause();
    void Toggle() { IsPlaying() ? Pause() : Play(); }

    /// Goes to clip sample `sample`, which is brought into [0, length].
    void Seek(std::int64_t sample);
    void SetLoop(bool loop);

    /// Linear, from 0 to 1.
    void SetVolume(float gain);
    void SetMuted(bool muted);
    [[nodiscard]] float Volume() const noexcept { return mVolume; }
    [[nodiscard]] bool IsMuted() const noexcept { return mMuted; }

    /// Plays on the device of this id whenever it is there, else on the system's choice; empty: on the latter always.
    void UseDevice(const QByteArray& id);
    [[nodiscard]] const QByteArray& WantedDevice() const noexcept { return mWantedDevice; }

    [[nodiscard]] bool IsPlaying() const noexcept { return mOutput != nullptr; }
    [[nodiscard]] bool Loop() const noexcept { return mLoop; }
    [[nodiscard]] std::int64_t Length() const noexcept { return mLength; }

    /// The clip sample that is heard, or that would be.
    [[nodiscard]] std::int64_t Position() const;

    /// What plays, or null.
    [[nodiscard]] ClipPlayback* Playback() const noexcept { return mPlayback.get(); }

    /// Where the sound goes, and what happens to it on the way, in words.
    [[nodiscard]] QString SoundText() const;

    /// The sound does not come out as the clip has it: SoundText says why.
    [[nodiscard]] bool SoundIsChanged() const;

    /// Stops at the clip's end, and leaves a device that asks for no more sound. Called with every picture of the
    /// window.
    void Tick();

Q_SIGNALS:
    void StateChanged();
    void PositionJumped();
    void SoundChanged();

private:
    struct Route;
    [[nodiscard]] Route FindRoute() const;
    [[nodiscard]] QAudioDevice Device() const;
    [[nodiscard]] float Gain() const noexcept { return mMuted ? 0 : mVolume; }
    void Start(std::int64_t from);
    void Stop();
    void Restart();
    void LookForDevices();
    void OutputFailed(const QString& problem);
    void GoOnInSilence(const QString& problem);

    QMediaDevices mDevices;
    QTimer mLook;
    QString mKnownSound;
    QByteArrayList mKnownDevices;
    MakeFeed mMakeFeed;  // none: there is nothing to play
    int mChannels = 2;
    double mRateHz = 0;
    std::int64_t mLength = 1;
    std::int64_t mParked = 0;
    bool mLoop = false;
    float mVolume = 1;
    bool mMuted = false;
    QByteArray mWantedDevice;
    QString mProblem;             // of the device; empty: it is used
    bool mDoesNotAnswer = false;  // the device that was played on last: it has kept a thread
    int mFailures = 0;
    int mLooksUntilRetry = 0;
    std::shared_ptr<ClipPlayback> mPlayback;
    std::unique_ptr<SoundOutput> mOutput;
    QByteArray mPlayingOn;  // the device's id; empty: in silence
};

}  // namespace studio
