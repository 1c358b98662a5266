#pragma once

#include "Host/Lineup/Check/Sound/Find/Placing.h"
#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace lineup::sound {

/// Of the tone: what is softer is silent.
inline constexpr double kSilentOfTone = 0.3;
/// Periods of a tone in which it is there or not.
inline constexpr double kSilenceWindow = 2.5;

/// The tones of a slot, as they sound at one place.
using Gains = std::vector<std::complex<double>>;

/// The samples of an input around a stretch of a slot, held against its tones.
class Zoom {
public:
    /// All must outlive it. `zero` is where the sound lies.
    Zoom(const History& history, const Reference& reference, const SlotMeter& meter, const SlotSound& sound,
         std::size_t input, double zero);

    /// Samples [first, end) s.
    void Load(double first, double end);

    /// The first sample that is not of the tones, or the last, s.
    [[nodiscard]] std::optional<double> Departs(const Gains& gains, double clear, bool last) const;

    /// The mean square between two places.
    [[nodiscard]] double PowerWithin(double first, double end) const;

    /// Silence between tone, from its start to its end, s: windows of some periods in which hardly anything is heard,
    /// after one and before one in which the tone of `amplitude` is there, more or less; what else follows a line-up
    /// that ends there does not count.
    [[nodiscard]] std::optional<std::pair<double, double>> SilenceWithin(double amplitude, double frequency) const;

    /// By how much the tones' gain goes up or down between two places, at most, where nothing else happens: in each
    /// window of `window` s they are there in their phase, louder or softer. Empty where that is not so.
    [[nodiscard]] std::optional<double> GainWithin(const Gains& gains, double first, double end, double window) const;

    [[nodiscard]] double FarthestFrom(const Gains& gains) const;

private:
    [[nodiscard]] double Heard(std::size_t n) const { return static_cast<double>(mSamples[n]) - mZero; }
    [[nodiscard]] double SecondOf(std::size_t n) const;
    [[nodiscard]] std::pair<double, double> LevelsOf(std::size_t first, std::size_t length, double frequency) const;
    [[nodiscard]] double At(const Gains& gains, std::size_t n) const;

    const SlidingBuffer<float>* mNarrow;
    double mRate;
    const std::vector<RefTone>* mTones;
    const Placing* mPlacing;
    double mDelay;
    double mZero;
    std::int64_t mFirst = 0;
    std::span<const float> mSamples;
};

}  // namespace lineup::sound
