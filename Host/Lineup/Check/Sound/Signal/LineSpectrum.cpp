#include "Host/Lineup/Check/Sound/Signal/LineSpectrum.h"

#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <array>
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
    // The inputs of a slot follow each other: they are as long as each other.
    thread_local std::vector<double> weights;
    if (weights.size() != samples.size()) {
        weights.resize(samples.size());
        for (std::size_t n = 0; n < samples.size(); ++n) {
            weights[n] = BlackmanHarris((static_cast<double>(n) + 0.5) / static_cast<double>(samples.size()));
        }
    }
    mWindowed.reserve(samples.size());
    for (std::size_t n = 0; n < samples.size(); ++n) {
        mSum += weights[n];
        mSquares += weights[n] * weights[n];
        mWindowed.push_back(static_cast<float>(weights[n]) * samples[n]);
    }
}

double LineSpectrum::PowerAt(double frequency) const {
    return std::norm(SineAt(frequency)) / 2;
}

std::complex<double> LineSpectrum::SineAt(double frequency) const {
    return SinesAt({&frequency, 1}).front();
}

// Goertzel's filters, some side by side: each waits for its own last sample alone.
std::vector<std::complex<double>> LineSpectrum::SinesAt(std::span<const double> frequencies) const {
    constexpr std::size_t kTogether = 8;
    std::vector<std::complex<double>> sines;
    sines.reserve(frequencies.size());
    for (std::size_t first = 0; first < frequencies.size(); first += kTogether) {
        const auto some = frequencies.subspan(first, std::min(kTogether, frequencies.size() - first));
        std::array<double, kTogether> twice{};
        std::array<double, kTogether> last{};
        std::array<double, kTogether> before{};
        std::ranges::transform(some, twice.begin(),
                               [this](double frequency) { return 2 * std::cos(kTurn * frequency / mRate); });
        for (const float x : mWindowed) {
            for (std::size_t i = 0; i < kTogether; ++i) {
                const double next = static_cast<double>(x) + twice[i] * last[i] - before[i];
                before[i] = last[i];
                last[i] = next;
            }
        }
        for (std::size_t i = 0; i < some.size(); ++i) {
            sines.push_back(SineOf(some[i], last[i], before[i]));
        }
    }
    return sines;
}

// The sum of x[n] exp(i omega (N - 1 - n)), turned so that phases count from the middle.
std::complex<double> LineSpectrum::SineOf(double frequency, double last, double before) const {
    const double omega = kTurn * frequency / mRate;
    const std::complex<double> sum = last - std::polar(before, -omega);
    const double half = (static_cast<double>(mWindowed.size()) - 1) / 2;
    return std::complex<double>(0, 2) * sum * std::polar(1.0, -omega * half) / mSum;
}

double LineSpectrum::Reach() const {
    return 4 * mRate / static_cast<double>(mWindowed.size());
}

}  // namespace lineup::sound
