#include "Host/Lineup/Check/Sound/Listener.h"

namespace lineup::sound {

namespace {

constexpr double kHistorySeconds = 20;     // more than a cycle and a bit of the longest sequence, played slowly
constexpr double kSearchSeconds = 0.5;     // between searches
constexpr double kWholeCycle = 1.03;       // what must have been heard since the first sight of a sequence
constexpr double kListenerShortest = 6.5;  // s

}  // namespace

Listener::Listener(int inputs, const Grid& grid, std::span<const Reference> references)
    : mReferences(references),
      mHistory(inputs, grid, kHistorySeconds),
      mFrontEnds(static_cast<std::size_t>(inputs), InputFrontEnd(grid)),
      mRuns(grid),
      mLanes(static_cast<std::size_t>(inputs), grid.HopSeconds()) {}

void Listener::Hear(std::span<const std::span<float>> samples) {
    for (std::size_t input = 0; input < samples.size(); ++input) {
        mFrontEnds[input].Process(samples[input], mHistory.narrow[input], mHistory.hops[input]);
    }
    mLanes.Advance(mHistory);
    if (mFollower) {
        mFollower->Advance(false);
        return;
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
    }
}

void Listener::Search(bool last) {
    mRuns.Forget(mHistory.SecondsFirst());
    const std::vector<ToneRun> runs = mRuns.Runs();
    const auto sighting = FindIdent(runs, mReferences);
    if (!sighting) {
        return;
    }
    const double cycle = sighting->reference->cycle / sighting->placing.tempo;
    const double heard = mRuns.Reached() - sighting->first;
    if (!last && heard < std::max(kWholeCycle * cycle, kListenerShortest)) {
        return;
    }
    if (const auto survey = MakeSurvey(mHistory, *sighting)) {
        mFollower = std::make_unique<Follower>(mHistory, *sighting->reference, *survey);
    }
}

}  // namespace lineup::sound
