#pragma once

#include <lineup/CheckReport.h>
#include "Apps/studio/Check/RecordingMovie.h"
#include "Apps/studio/Sound/Player.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

namespace studio {

/// Plays a recording that was checked: its sound, and its pictures at the sound's pace.
class CheckTransport : public QObject {
    Q_OBJECT

public:
    explicit CheckTransport(QObject* parent = nullptr);

    /// Takes another one, and plays no more. One without sound is not played.
    void SetRecording(const QString& file, const lineup::CheckReport& report);

    [[nodiscard]] bool CanPlay() const noexcept { return mCanPlay; }
    [[nodiscard]] bool IsPlaying() const noexcept { return mPlayer.IsPlaying(); }

    void Toggle();
    void Pause() { mPlayer.Pause(); }

    /// Goes to a place, s from the start of the recording, and goes on from there.
    void GoTo(double seconds);

    [[nodiscard]] Player& Sound() noexcept { return mPlayer; }

Q_SIGNALS:
    void StateChanged(bool isPlaying);

    /// Every picture of the window: what is heard, and what was heard in the last `since` s; null once it rests.
    void Moved(double seconds, PeakBank* peaks, double since);
    void Shown(const std::shared_ptr<const CardPicture>& picture, double seconds);

private:
    void TakeState();
    void Tick();
    [[nodiscard]] double Place() const { return static_cast<double>(mPlayer.Position()) / mRateHz; }

    QString mFile;
    double mRateHz = 1;
    bool mCanPlay = false;
    Player mPlayer;
    RecordingMovie mMovie;
    bool mHasPictures = false;
    QTimer mFrames;
    QElapsedTimer mSinceTick;
};

}  // namespace studio
