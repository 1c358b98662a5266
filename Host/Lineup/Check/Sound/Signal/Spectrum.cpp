#include "Host/Lineup/Check/Sound/Signal/Spectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lineup::sound {

namespace {

constexpr std::size_t kBits = 9;
constexpr double kSpectrumLeastAmplitude = 3e-5;  // full scale: -90 dBFS
constexpr double kLeastShare = 0.02;              // of the strongest line's amplitude

static_assert(Spectrum::kLength == std::size_t{1} << kBits);

std::size_t Reversed(std::size_t n) {
    std::size_t reversed = 0;
    for (std::size_t bit = 0; bit < kBits; ++bit) {
        reversed |= ((n >> bit) & 1U) << (kBits - 1 - bit);
    }
    return reversed;
}

}  // namespace

Spectrum::Spectrum(double narrowRate) : mRate(narrowRate), mReal(kLength), mImaginary(kLength), mPower(kLength / 2) {
    constexpr double kTurnPerSample = 2 * std::numbers::pi / static_cast<double>(kLength);
    for (std::size_t n = 0; n < kLength; ++n) {
        const double angle = kTurnPerSample * static_cast<double>(n);
        mWindow.push_back(static_cast<float>(0.5 - 0.5 * std::cos(angle)));
        mReversed.push_back(Reversed(n));
        mCosines.push_back(static_cast<float>(std::cos(angle)));
        mSines.push_back(static_cast<float>(-std::sin(angle)));
    }
}

void Spectrum::Analyse(const History& history, std::int64_t middle, std::vector<std::vector<SpectralPeak>>& peaks) {
    const std::int64_t first = middle - static_cast<std::int64_t>(kLength / 2);
    peaks.resize(history.Inputs());
    for (std::size_t input = 0; input < history.Inputs(); input += 2 * kLanes) {
        Load(history, first, input);
        Transform();
        for (std::size_t i = 0; i < 2 * kLanes && input + i < history.Inputs(); ++i) {
            PowerOf(i / 2, i % 2 != 0);
            PickPeaks(peaks[input + i]);
        }
    }
}

// Two inputs a transform: one as its real part, one as its imaginary part.
void Spectrum::Load(const History& history, std::int64_t first, std::size_t firstInput) {
    for (std::size_t i = 0; i < 2 * kLanes; ++i) {
        std::vector<Lane>& target = i % 2 == 0 ? mReal : mImaginary;
        const bool there = firstInput + i < history.Inputs();
        const auto samples = there
                                 ? history.narrow[firstInput + i].Get(first, first + static_cast<std::int64_t>(kLength))
                                 : std::span<const float>();
        for (std::size_t n = 0; n < kLength; ++n) {
            target[mReversed[n]][i / 2] = there ? samples[n] * mWindow[n] : 0.0F;
        }
    }
}

void Spectrum::Transform() {
    for (std::size_t half = 1; half < kLength; half *= 2) {
        const std::size_t step = kLength / (2 * half);
        for (std::size_t k = 0; k < half; ++k) {
            const float c = mCosines[k * step];
            const float s = mSines[k * step];
            for (std::size_t a = k; a < kLength; a += 2 * half) {
                Lane& ar = mReal[a];
                Lane& ai = mImaginary[a];
                Lane& br = mReal[a + half];
                Lane& bi = mImaginary[a + half];
                for (std::size_t i = 0; i < kLanes; ++i) {
                    const float tr = br[i] * c - bi[i] * s;
                    const float ti = br[i] * s + bi[i] * c;
                    br[i] = ar[i] - tr;
                    bi[i] = ai[i] - ti;
                    ar[i] += tr;
                    ai[i] += ti;
                }
            }
        }
    }
}

void Spectrum::PowerOf(std::size_t lane, bool second) {
    for (std::size_t k = 1; k < kLength / 2; ++k) {
        const std::size_t mirror = kLength - k;
        const float evenReal = mReal[k][lane] + mReal[mirror][lane];
        const float oddReal = mReal[k][lane] - mReal[mirror][lane];
        const float evenImaginary = mImaginary[k][lane] + mImaginary[mirror][lane];
        const float oddImaginary = mImaginary[k][lane] - mImaginary[mirror][lane];
        const float a = second ? evenImaginary : evenReal;
        const float b = second ? oddReal : oddImaginary;
        mPower[k] = (a * a + b * b) / 4;
    }
    mPower[0] = 0;
}

// The top of a parabola through the logarithms of a line and its neighbours.
void Spectrum::PickPeaks(std::vector<SpectralPeak>& peaks) const {
    constexpr double kWindowGain = static_cast<double>(kLength) / 4;  // of the Hann window, for a sine's amplitude
    peaks.clear();
    const auto strongest = static_cast<double>(*std::ranges::max_element(mPower));
    const double least = kSpectrumLeastAmplitude * kWindowGain;
    const double floor = std::max(strongest * kLeastShare * kLeastShare, least * least);
    for (std::size_t k = 2; k + 1 < mPower.size(); ++k) {
        const bool isTop = mPower[k] >= mPower[k - 1] && mPower[k] > mPower[k + 1];
        if (!isTop || static_cast<double>(mPower[k]) < floor) {
            continue;
        }
        const double before = std::log(std::max(static_cast<double>(mPower[k - 1]), floor * 1e-9));
        const double at = std::log(static_cast<double>(mPower[k]));
        const double after = std::log(std::max(static_cast<double>(mPower[k + 1]), floor * 1e-9));
        const double curve = before - 2 * at + after;
        const double offset = curve < 0 ? 0.5 * (before - after) / curve : 0;
        const double top = at - 0.25 * (before - after) * offset;
        peaks.push_back({(static_cast<double>(k) + offset) * mRate / static_cast<double>(kLength),
                         std::exp(top / 2) / kWindowGain});
    }
    std::ranges::sort(peaks, std::greater<>(), &SpectralPeak::amplitude);
    if (peaks.size() > kMostPeaks) {
        peaks.resize(kMostPeaks);
    }
}

}  // namespace lineup::sound
