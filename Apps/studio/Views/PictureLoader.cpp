#include "Apps/studio/Views/PictureLoader.h"

#include "Apps/studio/Document/ProblemWords.h"

#include <exception>
#include <utility>

namespace studio {

PictureLoader::PictureLoader(QObject* parent)
    : QObject(parent), mThread([this](const std::stop_token& stop) { Run(stop); }) {
    connect(this, &PictureLoader::Answered, this, &PictureLoader::Deliver, Qt::QueuedConnection);
}

PictureLoader::~PictureLoader() {
    mThread.request_stop();
    mThread.join();
}

void PictureLoader::Load(Maker make) {
    {
        const std::lock_guard lock(mMutex);
        mWish = Wish{std::move(make), ++mLastNumber};
    }
    mWake.notify_one();
}

void PictureLoader::Load(std::shared_ptr<const lineup::Clip> clip, const lineup::PictureFormat& format, Matrix matrix) {
    Load([clip = std::move(clip), format, matrix](const IsWanted& /*isWanted*/) {
        return std::make_shared<const CardPicture>(*clip, format, matrix);
    });
}

void PictureLoader::Run(const std::stop_token& stop) {
    std::unique_lock lock(mMutex);
    while (mWake.wait(lock, stop, [this] { return mWish.has_value(); })) {
        const Wish wish = std::move(*mWish);
        mWish.reset();
        lock.unlock();
        Answer answer = Serve(wish, stop);
        lock.lock();
        mAnswer = std::move(answer);
        Q_EMIT Answered(QPrivateSignal());
    }
}

PictureLoader::Answer PictureLoader::Serve(const Wish& wish, const std::stop_token& stop) const {
    Answer answer{.number = wish.number, .picture = {}, .problem = {}};
    try {
        answer.picture =
            wish.make([this, &wish, &stop] { return !stop.stop_requested() && wish.number == mLastNumber; });
    } catch (const std::exception& error) {
        answer.problem = ProblemWords(error);
    }
    return answer;
}

void PictureLoader::Deliver() {
    std::optional<Answer> answer;
    {
        const std::lock_guard lock(mMutex);
        answer.swap(mAnswer);
    }
    if (!answer || answer->number != mLastNumber) {
        return;
    }
    if (answer->problem.isEmpty()) {
        Q_EMIT Loaded(answer->picture);
    } else {
        Q_EMIT Failed(answer->problem);
    }
}

}  // namespace studio
