#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace lineup::sound {

/// The power of single lines in a stretch of samples, under a Blackman-Harris window: what lies further away than
/// four parts of one over its length is 92 dB down.
class LineSpectrum {
public:
    /// The samples must outlive it.
    LineSpectrum(std::span<const float> samples, double rate);

    /// Mean square of a sine of that frequency, Hz.
    [[nodiscard]] double PowerAt(double frequency) const;

    /// Hz: half of a line's width.
    [[nodiscard]] double Reach() const;

private:
    std::vector<float> mWindowed;
    double mRate;
    double mSum = 0;  // of the window
};

}  // namespace lineup::sound
