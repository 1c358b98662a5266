#include "Host/Lineup/Check/Watch/WatchRecording.h"

#include "Host/Lineup/Check/Asked.h"
#include "Host/Lineup/Check/Reader/RecordingName.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Host/Lineup/Check/ReadingFaults.h"
#include "Host/Lineup/Check/Watch/Alignment.h"
#include "Host/Lineup/Check/Watch/PictureWatch.h"
#include "Host/Lineup/Check/Watch/SoundWatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>

namespace lineup {

namespace {

constexpr double kBlockSeconds = 0.1;

// A feed's samples, a block after the other, from where looking begins to where it ends.
class Feed {
public:
    Feed(RecordingReader& reader, const CheckSettings& settings)
        : mReader(&reader),
          mBlock(static_cast<std::size_t>(std::max(1.0, kBlockSeconds * reader.SampleRate()))),
          mInputs(static_cast<std::size_t>(reader.Inputs()), std::vector<float>(mBlock)) {
        mSkip = std::llround(settings.fromSeconds.value_or(0) * reader.SampleRate());
        if (settings.forSeconds) {
            mLeft = std::llround(*settings.forSeconds * reader.SampleRate());
        }
        for (std::vector<float>& input : mInputs) {
            mTargets.push_back(input.data());
        }
    }

    /// The number of samples that Inputs() then has; 0 at the end.
    std::size_t Next() {
        while (mSkip > 0) {
            const std::size_t skipped = Read(std::min(mSkip, static_cast<std::int64_t>(mBlock)));
            mSkip = skipped == 0 ? 0 : mSkip - static_cast<std::int64_t>(skipped);
        }
        const std::size_t count = Read(std::min(mLeft, static_cast<std::int64_t>(mBlock)));
        mLeft -= static_cast<std::int64_t>(count);
        return count;
    }

    [[nodiscard]] const std::vector<std::vector<float>>& Inputs() const { return mInputs; }

private:
    std::size_t Read(std::int64_t most) {
        return most <= 0 ? 0 : mReader->Read(mTargets, static_cast<std::size_t>(most));
    }

    RecordingReader* mReader;
    std::size_t mBlock;
    std::vector<std::vector<float>> mInputs;
    std::vector<float*> mTargets;
    std::int64_t mSkip = 0;
    std::int64_t mLeft = std::numeric_limits<std::int64_t>::max();
};

// A feed and what is made of it: its sound, its pictures, or both.
class FeedWatch : public PictureListener {
public:
    FeedWatch(const std::shared_ptr<const Importer>& importer, const CheckSettings& settings,
              const WatchListener& listener, WatchReport& report)
        : mImporter(importer),
          mSettings(&settings),
          mListener(&listener),
          mReport(&report),
          mFrom(settings.fromSeconds.value_or(0)),
          mIsUrl(ParseRecordingName(report.source).kind == RecordingName::Kind::Url) {
        if (LooksAtPicture(settings)) {
            mPictures = std::make_unique<PictureWatch>(importer, settings, listener, report, mStamps);
        }
        mStamps.HearStamp(-mFrom, 0);
    }

    void OnFacts(const decoding::Picture& facts) override { mPictures->OnFacts(facts); }
    bool OnPicture(const DecodedPicture& picture) override { return mPictures->OnPicture(picture); }
    void OnEnd(const decoding::PictureEnd& end) override { mPictures->OnEnd(end); }

    [[nodiscard]] PictureListener* Pictures() { return mPictures ? this : nullptr; }

    // Called while nothing comes, too.
    [[nodiscard]] bool GoesOn() const { return !mListener->progress || mListener->progress(Seconds(), mAll); }

    void Take(RecordingReader& reader) {
        mAll = reader.Seconds();
        if (reader.HasSound() && ListensToSound(*mSettings)) {
            TakeSound(reader);
        } else if (mPictures) {
            mPictures->TellCycles();
            TakePictures(reader);
        }
    }

    // What was found until now.
    void Finish(const RecordingReader& reader) {
        if (mPictures) {
            mPictures->Finish();
        }
        if (mSound) {
            mSound->Finish();
        }
        Conclude();
        if (const auto why = reader.EndedBecause()) {
            mReport->notes.push_back(
                {.id = "ended-early",
                 .part = CheckPart::Both,
                 .text = fmt::format("After {:.3f} s nothing more could be read: {}.", Seconds(), *why)});
        }
        std::ranges::copy(reader.Notes(), std::back_inserter(mReport->notes));
    }

private:
    void TakeSound(RecordingReader& reader) {
        const FeedFacts facts{reader.SampleRate(), reader.Inputs(), reader.Bits(), reader.Lossy()};
        mSound.emplace(facts, mImporter, *mSettings, *mListener, *mReport, mStamps);
        if (mPictures) {
            mSound->AddToCycles([this](WatchedCycle& cycle) { mPictures->AddTo(cycle); });
        }
        Feed feed(reader, *mSettings);
        try {
            while (const std::size_t count = feed.Next()) {
                mSound->Hear(feed.Inputs(), count);
                TakeAside(reader, facts.rate);
                if (!GoesOn()) {
                    break;
                }
            }
        } catch (const Cancelled&) {  // NOLINT(bugprone-empty-catch): the watch ends in good order
        }
    }

    void TakeAside(RecordingReader& reader, double rate) {
        for (DamagedStretch& damage : reader.TakeDamage()) {
            damage.position -= std::llround(mFrom * rate);
            mSound->AddDamage(damage);
        }
        for (const decoding::Arrival& arrival : reader.TakeArrivals()) {
            mStamps.HearStamp(static_cast<double>(arrival.position) / rate - mFrom, arrival.stamp);
            if (mIsUrl) {
                mSound->Arrives(arrival.stamp, arrival.arrived);
            }
        }
        if (mPictures) {
            mPictures->GoOnTo(mSound->Seconds());
        }
    }

    static void TakePictures(RecordingReader& reader) {
        try {
            reader.ReadPictures();
        } catch (const Cancelled&) {  // NOLINT(bugprone-empty-catch): the watch ends in good order
        }
    }

    [[nodiscard]] double Seconds() const { return mSound ? mSound->Seconds() : mPictures ? mPictures->Seconds() : 0; }

    // As of a recording: a card that is right stands for a sound in which there is no line-up, unless one was asked
    // for.
    void Conclude() {
        if (!mReport->faults.empty()) {
            mReport->verdict = CheckVerdict::Faults;
        } else if (mPictures && mPictures->WasRight() && !NamesSound(*mSettings) && mReport->expected.empty()) {
            mReport->verdict = CheckVerdict::Right;
        }
    }

    std::shared_ptr<const Importer> mImporter;
    const CheckSettings* mSettings;
    const WatchListener* mListener;
    WatchReport* mReport;
    double mFrom;
    bool mIsUrl;
    std::optional<double> mAll;
    Alignment mStamps;
    std::optional<SoundWatch> mSound;
    std::unique_ptr<PictureWatch> mPictures;
};

}  // namespace

void WatchRecording(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                    const CheckSettings& settings, const WatchListener& listener, WatchReport& report) {
    ValidateCheckSettings(settings);
    report.source = recording;
    FeedWatch watch(importer, settings, listener, report);
    DecoderSettings decoder;
    decoder.wantsPicture = LooksAtPicture(settings);
    try {
        const auto reader = RecordingReader::Open(
            recording, decoder, [&watch] { return watch.GoesOn(); }, watch.Pictures());
        watch.Take(*reader);
        watch.Finish(*reader);
    } catch (const Unreadable& unreadable) {
        report.notes.push_back(WhyUnreadable(unreadable));
    } catch (const Cancelled&) {
        report.notes.push_back({.id = "nothing-heard", .part = CheckPart::Sound, .text = "Nothing had arrived yet."});
    }
}

}  // namespace lineup
