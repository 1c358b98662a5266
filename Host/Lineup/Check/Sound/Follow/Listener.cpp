#include "Host/Lineup/Check/Sound/Follow/Listener.h"

#include "Host/Lineup/Check/Sound/Follow/LowTone.h"

#include <algorithm>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kHistorySeconds = 20;     // more than a cycle and a bit of the longest sequence, played slowly
constexpr double kSearchSeconds = 0.5;     // between searches
constexpr double kWholeCycle = 1.03;       // what must have been heard since the first sight of a sequence
constexpr double kListenerShortest = 6.5;  // s
constexpr int kClearlyAnIdent = 4;         // stretches that are where a sequence has them

}  // namespace

Listener::Listener(int inputs, const Grid& grid, std::span<const Reference> references, Expectation expected,
                   std::shared_ptr<const Importer> importer, bool lossy)
    : mReferences(references),
      mExpected(std::move(expected)),
      mImporter(std::move(importer)),
      mHistory(inputs, grid, kHistorySeconds, lossy),
      mFrontEnds(static_cast<std::size_t>(inputs), InputFrontEnd(grid)),
      mRuns(grid),
      mLanes(static_cast<std::size_t>(inputs), grid.HopSeconds()) {}

const Lineup* Listener::Found() const {
    const Follower* const found = mFollower ? mFollower.get() : mToneFollower.get();
    return found == nullptr ? nullptr : &found->Found();
}

void Listener::Hear(std::span<const std::span<float>> samples) {
    for (std::size_t input = 0; input < samples.size(); ++input) {
        mFrontEnds[input].Process(samples[input], mHistory.narrow[input], mHistory.hops[input]);
    }
    mLanes.Advance(mHistory);
    if (mFollower) {
        mFollower->Advance(false);
        return;
    }
    if (mToneFollower) {
        mToneFollower->Advance(false);
    }
    mRuns.Advance(mHistory);
    if (mRuns.Reached() >= mNextSearch) {
        mNextSearch = mRuns.Reached() + kSearchSeconds;
        Search(false);
    }
}

void Listener::Finish() {
    if (!mFollower) {
        Search(true);
    }
    if (mFollower) {
        mFollower->Advance(true);
    } else if (mToneFollower) {
        mToneFollower->Advance(true);
    }
}

void Listener::Search(bool last) {
    mRuns.Forget(mHistory.SecondsFirst());
    const std::vector<ToneRun> runs = mRuns.Runs();
    SearchIdent(runs, last);
    if (!mFollower && !mToneFollower) {
        SearchTone(runs, last);
    }
}

void Listener::SearchIdent(std::span<const ToneRun> runs, bool last) {
    const auto sighting = FindIdent(runs, mReferences);
    // A gap or two in a tone that was asked for are dropouts.
    if (!sighting || (mExpected.AsksForTone() && sighting->matched < kClearlyAnIdent)) {
        return;
    }
    const double cycle = sighting->reference->cycle / sighting->placing.tempo;
    const double heard = mRuns.Reached() - sighting->first;
    if (!last && heard < std::max(kWholeCycle * cycle, kListenerShortest)) {
        return;
    }
    auto survey = MakeSurvey(mHistory, *sighting, runs);
    const Reference* reference = sighting->reference;
    if (const auto low = survey ? FindOtherLowTone(mHistory, *reference, *survey) : std::nullopt) {
        mVariant = std::make_unique<Reference>(WithLowTone(*reference, *low));
        reference = mVariant.get();
        Sighting other = *sighting;
        other.reference = reference;
        survey = MakeSurvey(mHistory, other, runs);
    }
    if (survey) {
        mFollower = std::make_unique<Follower>(mHistory, *reference, *survey);
    }
}

void Listener::SearchTone(std::span<const ToneRun> runs, bool last) {
    const auto sighting = FindSteadyTone(runs, mExpected, last ? std::optional(mHistory.SecondsEnd()) : std::nullopt);
    if (!sighting) {
        return;
    }
    if (auto tone = SurveyTone(mHistory, *sighting, mExpected, mImporter)) {
        mTone = std::move(tone->reference);
        mToneFollower = std::make_unique<Follower>(mHistory, *mTone, tone->survey);
    }
}

}  // namespace lineup::sound
