#pragma once

#include "Host/Lineup/Check/Sound/Signal/Spectrum.h"

#include <cstddef>
#include <vector>

namespace lineup::sound {

/// A tone at one input for as long as its pitch and its level stay.
struct ToneRun {
    std::size_t input = 0;
    double frequency = 0;  ///< Hz
    double amplitude = 0;  ///< full scale is 1
    double on = 0;         ///< s from the start of the recording
    double off = 0;
    bool openStart = false;  ///< it sounds from the recording's start on
    bool openEnd = false;    ///< it sounded to the end of what has been read

    [[nodiscard]] double Length() const { return off - on; }
};

/// A line that is followed from spectrum to spectrum. It takes the same memory however long it lasts.
class ToneTrack {
public:
    ToneTrack(std::size_t input, bool openStart) : mInput(input), mOpenStart(openStart) {}

    void Add(double time, const SpectralPeak& peak);
    /// A spectrum without the line.
    void Miss() { ++mMissed; }

    [[nodiscard]] std::size_t Input() const { return mInput; }
    [[nodiscard]] double Frequency() const;
    [[nodiscard]] double Amplitude() const;
    [[nodiscard]] bool Lost() const { return mMissed > kMostMissed; }
    [[nodiscard]] std::size_t Count() const { return mCount; }

    /// The level has gone to another and stays there.
    [[nodiscard]] bool LevelHasMoved() const;

    /// Ends where the level has moved, and gives back the tone at its new level.
    [[nodiscard]] ToneTrack SplitWhereLevelMoved();

    /// What has been followed so far. Tones begin and end where half of the amplitude is reached: there the edge is
    /// in the middle of the window.
    [[nodiscard]] ToneRun Run(bool goesOn) const;

private:
    static constexpr int kMostMissed = 1;
    static constexpr std::size_t kKept = 6;  // spectra at each end: more than an edge takes

    struct Point {
        double time = 0;
        SpectralPeak peak;
    };

    // Spectra that lie across an edge weigh little.
    struct Sums {
        double weight = 0;
        double frequency = 0;
        double amplitude = 0;

        void Add(const SpectralPeak& peak);
    };

    [[nodiscard]] Sums Total() const;
    [[nodiscard]] double OldLevel() const { return mOld.weight > 0 ? mOld.amplitude / mOld.weight : 0; }

    std::size_t mInput;
    bool mOpenStart;
    int mMissed = 0;
    std::size_t mCount = 0;
    Sums mOld;  // of all but the tail
    std::vector<Point> mHead;
    std::vector<Point> mTail;
};

}  // namespace lineup::sound
