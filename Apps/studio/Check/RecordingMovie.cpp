#include "Apps/studio/Check/RecordingMovie.h"

#include "Apps/studio/Check/RecordingPicture.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"

#include <QFile>
#include <QMetaObject>
#include <chrono>
#include <cmath>
#include <exception>

namespace studio {

namespace {

constexpr auto kLookAgain = std::chrono::milliseconds(4);
constexpr double kTooLate = 0.1;    // s: left out
constexpr double kElsewhere = 1.5;  // s from the place: decoding begins there anew

}  // namespace

// Waits for the place that each picture has.
class RecordingMovie::Listener : public lineup::PictureListener {
public:
    Listener(RecordingMovie& movie, const std::stop_token& stop) : mMovie(&movie), mStop(&stop) {}

    void OnFacts(const lineup::decoding::Picture& /*facts*/) override {}
    void OnEnd(const lineup::decoding::PictureEnd& /*end*/) override {}

    bool OnPicture(const lineup::DecodedPicture& picture) override {
        const double due = picture.head.seconds;
        const bool isFirst = !mHasShown;
        while (!isFirst && Place() < due && due < Place() + kElsewhere && !mStop->stop_requested()) {
            std::this_thread::sleep_for(kLookAgain);
        }
        if (mStop->stop_requested() || (!isFirst && std::abs(Place() - due) > kElsewhere)) {
            return false;
        }
        const bool isShown = isFirst || Place() - due < kTooLate;
        if (picture.head.planes > 0 && isShown && mMovie->mIsTaken.exchange(false)) {
            mMovie->Show(MakeRecordingPicture(picture), due);
        }
        mHasShown = true;
        return true;
    }

private:
    [[nodiscard]] double Place() const { return mMovie->mPlace.load(); }

    RecordingMovie* mMovie;
    const std::stop_token* mStop;
    bool mHasShown = false;
};

RecordingMovie::~RecordingMovie() {
    Stop();
}

void RecordingMovie::Play(const QString& file, double seconds) {
    Stop();
    mPlace.store(seconds);
    mIsTaken.store(true);
    mThread = std::jthread([this, file](const std::stop_token& stop) { Run(file, stop); });
}

void RecordingMovie::Stop() {
    mThread = {};
}

void RecordingMovie::Show(const std::shared_ptr<const CardPicture>& picture, double seconds) {
    QMetaObject::invokeMethod(
        this,
        [this, picture, seconds] {
            mIsTaken.store(true);
            if (IsPlaying()) {
                Q_EMIT Shown(picture, seconds);
            }
        },
        Qt::QueuedConnection);
}

void RecordingMovie::Run(const QString& file, const std::stop_token& stop) {
    const auto isWanted = [&stop] { return !stop.stop_requested(); };
    while (isWanted()) {
        const double from = mPlace.load();
        try {
            Listener listener(*this, stop);
            lineup::DecoderSettings settings;
            settings.wantsSound = false;
            settings.wantsPicture = true;
            settings.from = from;
            lineup::RecordingReader::Open(QFile::encodeName(file).toStdString(), settings, isWanted, &listener)
                ->ReadPictures();
        } catch (const std::exception&) {
            return;  // the check says what is wrong with it
        }
        // Behind the last picture, until the place is elsewhere.
        while (isWanted() && mPlace.load() >= from && mPlace.load() < from + kElsewhere) {
            std::this_thread::sleep_for(kLookAgain);
        }
    }
}

}  // namespace studio
