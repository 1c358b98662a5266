#include "Host/Lineup/Check/Watch/PictureWatch.h"

#include "Host/Lineup/Check/Asked.h"
#include "Host/Lineup/Check/Picture/Decide/Verdict.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

constexpr double kSettlesWithin = 3 * PictureWatch::kStretch;  // a fade does; what moves for longer is judged as it is
constexpr double kToldAfter = kSettlesWithin + PictureWatch::kStretch;
constexpr double kKept = 120;  // s of what was told

}  // namespace

PictureWatch::PictureWatch(const std::shared_ptr<const Importer>& importer, const CheckSettings& settings,
                           const WatchListener& listener, WatchReport& report, Alignment& alignment)
    : mClip(importer),
      mSettings(WithoutTimes(settings)),
      mFor(settings.forSeconds),
      mListener(&listener),
      mReport(&report),
      mAlignment(&alignment),
      mLedger(listener, report, FaultLedger::Counting::Once),
      mExaminer(mClip, mSettings) {}

bool PictureWatch::OnPicture(const DecodedPicture& picture) {
    const double second = mAlignment->SecondAt(picture.head.seconds);
    mAlignment->SeePicture(picture.head.seconds, mFacts.frameRate);
    if (mFor && second >= *mFor) {
        return false;
    }
    if (second < 0) {
        return true;
    }
    mPicture = picture;
    mPicture.head.seconds = second;
    mFirst = mFirst.value_or(second);
    Take(mPicture);
    mSeconds = second + (mFacts.frameRate > 0 ? 1 / mFacts.frameRate : 0);
    TellCyclesBefore(mSeconds - kToldAfter);
    return true;
}

void PictureWatch::Take(const DecodedPicture& picture) {
    const double second = picture.head.seconds;
    if (!mStretch) {
        mKnown.SetReference(picture);
        Begin(picture, false);
    } else if (std::abs(second - mSeconds) > kNoPictures) {
        Begin(picture, mKnown.Differs(picture).has_value());
    } else if (mStretch->isOther && !mKnown.Differs(picture)) {
        TellReturn(second);
        Begin(picture, false);
    } else if (second >= mStretch->settled + kStretch || second >= mStretch->begins + kSettlesWithin) {
        Judge(second);
        mKnown = std::move(mStretch->alike);
        Begin(picture, mKnown.Differs(picture).has_value());
    } else if (mStretch->alike.Differs(picture)) {
        Settle(picture);
    }
    ++mStretch->frames;
    if (const auto change = mStretch->isOther ? mKnown.Differs(picture) : std::nullopt) {
        mStretch->black += change->isBlack ? 1 : 0;
        mStretch->damaged += change->isDamaged ? 1 : 0;
    }
    mExaminer.OnPicture(picture);
}

void PictureWatch::Begin(const DecodedPicture& picture, bool isOther) {
    mStretch = Stretch{};
    mStretch->begins = picture.head.seconds;
    mStretch->settled = picture.head.seconds;
    mStretch->alike.SetReference(picture);
    mStretch->isOther = isOther;
    mExaminer.Restart();
}

// While pictures differ from each other, it is not known what they are going to be.
void PictureWatch::Settle(const DecodedPicture& picture) {
    if (mStretch->isOther) {
        mStretch->settled = picture.head.seconds;
        mStretch->alike.SetReference(picture);
        mExaminer.Restart();
        return;
    }
    if (mJudged.empty()) {
        Judge(picture.head.seconds);
    }
    Begin(picture, true);
}

void PictureWatch::Judge(double end) {
    const picture::PictureFindings findings = mExaminer.Findings();
    mIsCardThere = findings.isCardFound;
    if (mIsCardThere && mReport->card.empty()) {
        mReport->card = findings.picture->card;
        mSettings.card = mSettings.card == "auto" ? mReport->card : mSettings.card;
    }
    if (mIsCardThere || mReport->card.empty()) {
        mNotes = findings.notes;
    }
    std::vector<CheckFault> standing;
    std::ranges::copy_if(findings.faults, std::back_inserter(standing),
                         [](const CheckFault& fault) { return !fault.at; });
    mLedger.TakeStanding(standing, mStretch->begins,
                         [](double /*first*/, double last, std::span<const int> /*inputs*/,
                            std::optional<double> /*since*/) { return last; });
    mLedger.Forget(end - kKept);
    mJudged.push_back({.begins = mStretch->begins,
                       .ends = end,
                       .hasCard = mIsCardThere,
                       .isRight = mIsCardThere && findings.faults.empty()});
    mWasRight = mWasRight || mJudged.back().isRight;
    while (mJudged.front().ends < end - kKept) {
        mJudged.pop_front();
    }
}

// What was there in between is over.
void PictureWatch::TellReturn(double end) {
    if (mReport->card.empty()) {
        return;
    }
    const Stretch& other = *mStretch;
    const char* const how = other.black == other.frames     ? "black"
                            : other.damaged == other.frames ? "damaged"
                                                            : "another";
    const CheckFault fault = picture::MakePictureFault(
        "picture-changes", other.frames, 0,
        fmt::format("From {:.3f} s on the picture is {} for {:.3f} s.", other.begins, how, end - other.begins),
        other.begins);
    mLedger.TakeMoments(std::span(&fault, 1));
}

void PictureWatch::GoOnTo(double second) {
    if (mIsCardThere && second > mSeconds + kNoPictures) {
        mIsCardThere = false;
        mLedger.Begin(picture::MakePictureFault("card-missing", {}, {},
                                                fmt::format("From {:.3f} s on there are no pictures.", mSeconds)),
                      mSeconds);
    }
}

void PictureWatch::AddTo(WatchedCycle& cycle) const {
    for (const std::string& id : mLedger.IdsWithin(cycle.start, cycle.end)) {
        if (std::ranges::find(cycle.faults, id) == cycle.faults.end()) {
            cycle.faults.push_back(id);
        }
    }
    const bool hasCard = std::ranges::any_of(
        mJudged, [&cycle](const Judged& judged) { return judged.hasCard && judged.Overlaps(cycle); });
    cycle.card = hasCard ? mReport->card : "";
}

void PictureWatch::TellCyclesBefore(double second) {
    while (mTellsCycles && mFirst && *mFirst + static_cast<double>(mReport->cycles + 1) * kCycle <= second) {
        WatchedCycle cycle;
        cycle.start = *mFirst + static_cast<double>(mReport->cycles) * kCycle;
        cycle.end = cycle.start + kCycle;
        cycle.number = ++mReport->cycles;
        cycle.alignment = mAlignment->Now();
        AddTo(cycle);
        const bool isRight = std::ranges::any_of(
            mJudged, [&cycle](const Judged& judged) { return judged.isRight && judged.Overlaps(cycle); });
        cycle.verdict = !cycle.faults.empty() ? CheckVerdict::Faults
                        : isRight             ? CheckVerdict::Right
                                              : CheckVerdict::CannotTell;
        mReport->rightCycles += cycle.verdict == CheckVerdict::Right ? 1 : 0;
        if (mListener->onCycle) {
            mListener->onCycle(cycle);
        }
    }
}

// Other pictures at the end are as likely the sender's as the path's.
void PictureWatch::Finish() {
    if (mStretch && !mStretch->isOther) {
        Judge(mSeconds);
    }
    mLedger.Finish();
    TellCyclesBefore(mSeconds);
    if (mTellsCycles) {
        mReport->seconds = mSeconds;
    }
    std::ranges::copy(mNotes, std::back_inserter(mReport->notes));
}

}  // namespace parts

}  // namespace lineup
