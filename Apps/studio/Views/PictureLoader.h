#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QObject>
#include <QString>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace studio {

/// Asks for frames in a thread of its own, so that a large one keeps nobody waiting. Of several wishes the
/// last one counts.
class PictureLoader : public QObject {
    Q_OBJECT

public:
    explicit PictureLoader(QObject* parent = nullptr);
    ~PictureLoader() override;

    void Load(std::shared_ptr<const lineup::Clip> clip, const lineup::PictureFormat& format, Matrix matrix);

Q_SIGNALS:
    /// In the thread of this object.
    void Loaded(const std::shared_ptr<const CardPicture>& picture);
    void Failed(const QString& problem);
    /// For this class alone: the thread has an answer.
    void Answered(QPrivateSignal);

private:
    struct Wish {
        std::shared_ptr<const lineup::Clip> clip;
        lineup::PictureFormat format;
        Matrix matrix = Matrix::Bt601;
        std::uint64_t number = 0;
    };
    struct Answer {
        std::uint64_t number = 0;
        std::shared_ptr<const CardPicture> picture;  // none: a problem
        QString problem;
    };
    void Run(const std::stop_token& stop);
    static Answer Serve(const Wish& wish);
    void Deliver();

    std::uint64_t mLastNumber = 0;  // of the UI thread
    std::mutex mMutex;
    std::condition_variable_any mWake;
    std::optional<Wish> mWish;      // behind the mutex
    std::optional<Answer> mAnswer;  // behind the mutex
    std::jthread mThread;
};

}  // namespace studio
