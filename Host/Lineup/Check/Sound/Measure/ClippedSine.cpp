#include "Host/Lineup/Check/Sound/Measure/ClippedSine.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lineup::sound {

namespace {

constexpr double kLeastPart = 0.2;
constexpr double kMostPart = 0.995;
constexpr double kPartStep = 0.001;
constexpr int kPartDoubt = 6;         // steps
constexpr double kClippedFits = 0.1;  // of the third harmonic: what may be left
constexpr double kClippedDoubts = 4;  // standard deviations
constexpr double kOwnOfThird = 0.05;  // of the third harmonic: a soft bend leaves hardly any others
constexpr double kHardlySoft = 0.1;   // of the fundamental: a third harmonic so high comes from tops that are gone
constexpr double kAliasing = 0.0015;  // of the fundamental: what a sampled edge folds back
constexpr int kOddHarmonics[] = {3, 5, 7};

const HarmonicTally& Harmonic(const LineFindings& lines, int n) {
    return lines.harmonic[static_cast<std::size_t>(n - 2)];
}

double Misfit(const LineFindings& lines, double part) {
    double misfit = 0;
    for (const int n : kOddHarmonics) {
        const HarmonicTally& harmonic = Harmonic(lines, n);
        if (harmonic.weight > 0) {
            misfit = std::max(misfit,
                              std::abs(harmonic.Mean() - ClippedHarmonic(part, n)) - kClippedDoubts * harmonic.Doubt());
        }
    }
    return misfit;
}

}  // namespace

double ClippedGain(double part) {
    return 2 / std::numbers::pi * (std::asin(part) + part * std::sqrt(1 - part * part));
}

double ClippedHarmonic(double part, int n) {
    const double edge = std::asin(part);
    const double sloping = std::sin((n - 1) * edge) / (n - 1) - std::sin((n + 1) * edge) / (n + 1);
    const double flat = part * std::cos(n * edge) / n;
    return (2 * sloping + 4 * flat) / std::numbers::pi / ClippedGain(part);
}

double PartOfFundamental(double over) {
    if (over <= 1) {
        return 1;
    }
    double least = 0.01;
    double most = 1;
    while (most - least > 1e-6) {
        const double part = (least + most) / 2;
        (ClippedGain(part) / part > over ? least : most) = part;
    }
    return least;
}

std::optional<double> PartOfHarmonics(const LineFindings& lines) {
    const HarmonicTally& third = Harmonic(lines, 3);
    const HarmonicTally& fifth = Harmonic(lines, 5);
    if (third.weight == 0 || fifth.weight == 0) {
        return std::nullopt;
    }
    double best = kMostPart;
    for (int step = 0; kLeastPart + step * kPartStep < kMostPart; ++step) {
        const double part = kLeastPart + step * kPartStep;
        best = Misfit(lines, part) < Misfit(lines, best) ? part : best;
    }
    const double height = std::abs(third.Mean());
    const double others = std::abs(fifth.Mean()) - kClippedDoubts * fifth.Doubt();
    const bool fits = Misfit(lines, best) < kClippedFits * height;
    const bool isHard = others > kOwnOfThird * height || height > kHardlySoft;
    return fits && isHard && height > kClippedDoubts * third.Doubt() ? std::optional(best) : std::nullopt;
}

double BesideClipped(const LineFindings& lines, double part) {
    double least = Misfit(lines, part);
    for (int step = -kPartDoubt; step <= kPartDoubt; ++step) {
        least = std::min(least, Misfit(lines, std::min(part + step * kPartStep, kMostPart)));
    }
    return std::max(0.0, least - kAliasing);
}

}  // namespace lineup::sound
