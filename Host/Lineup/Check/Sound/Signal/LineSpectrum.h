#pragma once

#include <complex>
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

    /// Amplitude and phase of a sine of that frequency: the phase counts from the middle of the samples.
    [[nodiscard]] std::complex<double> SineAt(double frequency) const;

    /// The same of several frequencies: faster than one after the other.
    [[nodiscard]] std::vector<std::complex<double>> SinesAt(std::span<const double> frequencies) const;

    /// The mean square of white noise that has `power` at each frequency.
    [[nodiscard]] double NoiseOf(double power) const { return power * mSum * mSum / (2 * mSquares); }

    /// Hz: half of a line's width.
    [[nodiscard]] double Reach() const;

private:
    [[nodiscard]] std::complex<double> SineOf(double frequency, double last, double before) const;

    std::vector<float> mWindowed;
    double mRate;
    double mSum = 0;  // of the window
    double mSquares = 0;
};

}  // namespace lineup::sound
