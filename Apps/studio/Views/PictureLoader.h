#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace studio {

/// Makes pictures in a thread of its own, so that a large one keeps nobody waiting. Of several wishes the last one
/// counts.
class PictureLoader : public QObject {
    Q_OBJECT

public:
    /// Makes a picture, null where there is nothing to show, or throws. `isWanted` turns false once another picture is
    /// wished for, or none.
    using IsWanted = std::function<bool()>;
    using Maker = std::function<std::shared_ptr<const CardPicture>(const IsWanted& isWanted)>;

    explicit PictureLoader(QObject* parent = nullptr);
    ~PictureLoader() override;

    void Load(Maker make);

    /// The clip's frame.
    void Load(std::shared_ptr<const lineup::Clip> clip, const lineup::PictureFormat& format, Matrix matrix);

    /// Nothing that was wished for is delivered any more.
    void Forget() { ++mLastNumber; }

Q_SIGNALS:
    /// In the thread of this object.
    void Loaded(const std::shared_ptr<const CardPicture>& picture);
    void Failed(const QString& problem);
    /// For this class alone: the thread has an answer.
    void Answered(QPrivateSignal);

private:
    struct Wish {
        Maker make;
        std::uint64_t number = 0;
    };
    struct Answer {
        std::uint64_t number = 0;
        std::shared_ptr<const CardPicture> picture;
        QString problem;
    };
    void Run(const std::stop_token& stop);
    [[nodiscard]] Answer Serve(const Wish& wish, const std::stop_token& stop) const;
    void Deliver();

    std::atomic<std::uint64_t> mLastNumber{0};  // set by the UI thread
    std::mutex mMutex;
    std::condition_variable_any mWake;
    std::optional<Wish> mWish;      // behind the mutex
    std::optional<Answer> mAnswer;  // behind the mutex
    std::jthread mThread;
};

}  // namespace studio
