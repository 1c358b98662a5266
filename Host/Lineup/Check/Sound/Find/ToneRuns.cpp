#include "Host/Lineup/Check/Sound/Find/ToneRuns.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace lineup::sound {

namespace {

constexpr auto kHalfWindow = static_cast<std::int64_t>(Spectrum::kLength / 2);
constexpr int kHopsPerSpectrum = 2;
constexpr double kToneRunsSamePitch = 0.012;  // relative
constexpr double kToneRunsSamePitchHz = 8;    // what low tones move within so short a window
constexpr std::size_t kToneRunsShortest = 4;  // spectra
constexpr std::size_t kMostEnded = 4000;

bool SamePitch(double a, double b) {
    return std::abs(a - b) <= std::max(kToneRunsSamePitchHz, kToneRunsSamePitch * b);
}

}  // namespace

ToneRuns::ToneRuns(const Grid& grid) : mGrid(grid), mSpectrum(grid.NarrowRate()), mNext(kHalfWindow) {}

void ToneRuns::Advance(const History& history) {
    const std::int64_t first = history.narrow.front().First() + kHalfWindow;
    if (mNext < first) {
        mTracks.clear();
        mNext = first;
        mAtStart = false;
    }
    for (; mNext + kHalfWindow <= history.NarrowEnd(); mNext += std::int64_t{kHopsPerSpectrum} * mGrid.hop) {
        mSpectrum.Analyse(history, mNext, mPeaks);
        mReached = static_cast<double>(mNext) / mGrid.NarrowRate();
        for (std::size_t input = 0; input < mPeaks.size(); ++input) {
            Follow(mReached, input, mPeaks[input]);
        }
        CloseEnded();
        mAtStart = false;
    }
}

void ToneRuns::Follow(double time, std::size_t input, std::vector<SpectralPeak> peaks) {
    for (ToneTrack& track : mTracks) {
        if (track.Input() != input) {
            continue;
        }
        const auto found = std::ranges::find_if(
            peaks, [&](const SpectralPeak& peak) { return SamePitch(peak.frequency, track.Frequency()); });
        if (found == peaks.end()) {
            track.Miss();
        } else {
            track.Add(time, *found);
            peaks.erase(found);
        }
    }
    for (const SpectralPeak& peak : peaks) {
        mTracks.emplace_back(input, mAtStart).Add(time, peak);
    }
}

void ToneRuns::CloseEnded() {
    std::vector<ToneTrack> ended;
    for (ToneTrack& track : mTracks) {
        if (!track.Lost() && track.LevelHasMoved()) {
            ended.push_back(track.SplitWhereLevelMoved());
            std::swap(ended.back(), track);  // what goes on stays in its place, what has ended is kept
        } else if (track.Lost()) {
            ended.push_back(track);
        }
    }
    for (const ToneTrack& track : ended) {
        if (track.Count() >= kToneRunsShortest) {
            mEnded.push_back(track.Run(false));
        }
    }
    std::erase_if(mTracks, [](const ToneTrack& track) { return track.Lost(); });
    if (mEnded.size() > kMostEnded) {
        mEnded.erase(mEnded.begin(), mEnded.end() - kMostEnded);
    }
}

void ToneRuns::Forget(double before) {
    std::erase_if(mEnded, [before](const ToneRun& run) { return run.off < before; });
}

std::vector<ToneRun> ToneRuns::Runs() const {
    std::vector<ToneRun> runs(mEnded.begin(), mEnded.end());
    for (const ToneTrack& track : mTracks) {
        if (track.Count() >= kToneRunsShortest) {
            runs.push_back(track.Run(true));
        }
    }
    return runs;
}

}  // namespace lineup::sound
