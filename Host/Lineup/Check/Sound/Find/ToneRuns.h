#pragma once

#include "Host/Lineup/Check/Sound/Find/ToneTrack.h"
#include "Host/Lineup/Check/Sound/Signal/Spectrum.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace lineup::sound {

/// Follows the lines of short spectra at all inputs, and tells where tones begin and end, to a few milliseconds.
class ToneRuns {
public:
    explicit ToneRuns(const Grid& grid);

    /// Looks at what has come into the history since the last call. What has left it before that is passed over, and
    /// no tone goes on across it.
    void Advance(const History& history);

    /// Forgets what ended before second `before`.
    void Forget(double before);

    /// The tones that have ended, and those that sound.
    [[nodiscard]] std::vector<ToneRun> Runs() const;

    /// Where the last spectrum stood, s.
    [[nodiscard]] double Reached() const { return mReached; }

private:
    void Follow(double time, std::size_t input, std::vector<SpectralPeak> peaks);
    void CloseEnded();

    Grid mGrid;
    Spectrum mSpectrum;
    std::int64_t mNext;  // the narrow sample in the middle of the next spectrum
    double mReached = 0;
    bool mAtStart = true;
    std::vector<ToneTrack> mTracks;
    std::deque<ToneRun> mEnded;
    std::vector<std::vector<SpectralPeak>> mPeaks;
};

}  // namespace lineup::sound
