#include "Apps/studio/Views/PictureLoader.h"

#include <exception>

namespace studio {

PictureLoader::PictureLoader(QObject* parent)
    : QObject(parent), mThread([this](const std::stop_token& stop) { Run(stop); }) {}

PictureLoader::~PictureLoader() {
    mThread.request_stop();
    mThread.join();
}

void PictureLoader::Load(std::shared_ptr<const lineup::Clip> clip, const lineup::PictureFormat& format) {
    {
        const std::lock_guard lock(mMutex);
        mWish = Wish{std::move(clip), format, ++mLastNumber};
    }
    mWake.notify_one();
}

void PictureLoader::Run(const std::stop_token& stop) {
    std::unique_lock lock(mMutex);
    while (mWake.wait(lock, stop, [this] { return mWish.has_value(); })) {
        const Wish wish = std::move(*mWish);
        mWish.reset();
        lock.unlock();
        Serve(wish);
        lock.lock();
    }
}

void PictureLoader::Serve(const Wish& wish) {
    std::shared_ptr<const CardPicture> picture;
    QString problem;
    try {
        picture = std::make_shared<CardPicture>(*wish.clip, wish.format);
    } catch (const std::exception& error) {
        problem = QString::fromUtf8(error.what());
    }
    QMetaObject::invokeMethod(
        this, [this, number = wish.number, picture, problem] { Deliver(number, picture, problem); },
        Qt::QueuedConnection);
}

void PictureLoader::Deliver(std::uint64_t number, const std::shared_ptr<const CardPicture>& picture,
                            const QString& problem) {
    if (number != mLastNumber) {
        return;
    }
    if (picture != nullptr) {
        Q_EMIT Loaded(picture);
    } else {
        Q_EMIT Failed(problem);
    }
}

}  // namespace studio
