#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <stop_token>
#include <thread>

namespace studio {

/// The pictures of a recording one after the other while it plays, at the pace of whoever says where it is. Pictures
/// that would come too late, or faster than they are taken, are left out.
class RecordingMovie : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~RecordingMovie() override;

    /// Plays from a place on, s from the start of the recording.
    void Play(const QString& file, double seconds);

    /// Where the playback is.
    void SetPlace(double seconds) noexcept { mPlace.store(seconds); }

    /// Shows no more pictures. Waits for the thread.
    void Stop();

    [[nodiscard]] bool IsPlaying() const noexcept { return mThread.joinable(); }

Q_SIGNALS:
    /// In the thread of this object.
    void Shown(const std::shared_ptr<const CardPicture>& picture, double seconds);

private:
    class Listener;
    void Run(const QString& file, const std::stop_token& stop);
    void Show(const std::shared_ptr<const CardPicture>& picture, double seconds);

    std::atomic<double> mPlace{0};
    std::atomic<bool> mIsTaken{true};  // the last picture
    std::jthread mThread;
};

}  // namespace studio
