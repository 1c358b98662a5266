#include "Host/Lineup/Check/Sound/Signal/LineSpectrum.h"

#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <cmath>
#include <complex>

namespace lineup::sound {

namespace {

// F. J. Harris, "On the Use of Windows for Harmonic Analysis", 1978: four terms, -92 dB.
double BlackmanHarris(double turns) {
    return 0.35875 - 0.48829 * std::cos(kTurn * turns) + 0.14128 * std::cos(2 * kTurn * turns) -
           0.01168 * std::cos(3 * kTurn * turns);
}

}  // namespace

LineSpectrum::LineSpectrum(std::span<const float> samples, double rate) : mRate(rate) {
    mWindowed.reserve(samples.size());
    for (std::size_t n = 0; n < samples.size(); ++n) {
        const double weight = BlackmanHarris((static_cast<double>(n) + 0.5) / static_cast<double>(samples.size()));
        mSum += weight;
        mSquares += weight * weight;
        mWindowed.push_back(static_cast<float>(weight) * samples[n]);
    }
}

double LineSpectrum::PowerAt(double frequency) const {
    return std::norm(SineAt(frequency)) / 2;
}

std::complex<double> LineSpectrum::SineAt(double frequency) const {
    const double omega = kTurn * frequency / mRate;
    const double twice = 2 * std::cos(omega);  // Goertzel
    double last = 0;
    double before = 0;
    for (const float x : mWindowed) {
        const double next = static_cast<double>(x) + twice * last - before;
        before = last;
        last = next;
    }
    // The sum of x[n] exp(i omega (N - 1 - n)), turned so that phases count from the middle.
    const std::complex<double> sum = last - std::polar(before, -omega);
    const double half = (static_cast<double>(mWindowed.size()) - 1) / 2;
    return std::complex<double>(0, 2) * sum * std::polar(1.0, -omega * half) / mSum;
}

double LineSpectrum::Reach() const {
    return 4 * mRate / static_cast<double>(mWindowed.size());
}

}  // namespace lineup::sound
