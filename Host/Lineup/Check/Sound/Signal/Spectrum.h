#pragma once

#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lineup::sound {

/// A line in a spectrum.
struct SpectralPeak {
    double frequency = 0;  ///< Hz
    double amplitude = 0;  ///< of the sine, full scale is 1
};

/// Short spectra of all inputs, of which only the strongest lines are kept.
class Spectrum {
public:
    static constexpr std::size_t kLength = 512;  ///< narrow samples under the window
    static constexpr std::size_t kMostPeaks = 4;

    explicit Spectrum(double narrowRate);

    /// The lines of each input around narrow sample `middle`, strongest first; kLength / 2 samples on both sides must
    /// be there.
    void Analyse(const History& history, std::int64_t middle, std::vector<std::vector<SpectralPeak>>& peaks);

private:
    static constexpr std::size_t kLanes = 4;  // transforms side by side, each of two inputs
    using Lane = std::array<float, kLanes>;

    void Load(const History& history, std::int64_t first, std::size_t firstInput);
    void Transform();
    void PowerOf(std::size_t lane, bool second);
    void PickPeaks(std::vector<SpectralPeak>& peaks) const;

    double mRate;
    std::vector<float> mWindow;
    std::vector<std::size_t> mReversed;
    std::vector<float> mCosines;
    std::vector<float> mSines;
    std::vector<Lane> mReal;
    std::vector<Lane> mImaginary;
    std::vector<float> mPower;
};

}  // namespace lineup::sound
