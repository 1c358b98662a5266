#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"
#include "Host/Lineup/Check/Sound/Signal/Tally.h"

#include <array>
#include <cmath>
#include <complex>
#include <cstddef>

namespace lineup::sound {

/// What the mains leave in a recording.
struct HumTally {
    LevelTally power;   ///< mean square of its lines
    LevelTally beside;  ///< the same between them
};

/// The mains that there are, Hz.
inline constexpr std::array<double, 2> kMains = {50, 60};

/// Harmonics of a tone from the second on.
inline constexpr std::size_t kHarmonics = 6;

/// One harmonic against its tone: amplitude and phase, where the tone's own is a sine of phase 0.
struct HarmonicTally {
    std::complex<double> sum;
    double weight = 0;  ///< s
    double doubts = 0;  ///< squares of what noise may have added

    [[nodiscard]] std::complex<double> Mean() const { return weight > 0 ? sum / weight : 0; }
    /// Standard deviation of the mean.
    [[nodiscard]] double Doubt() const { return weight > 0 ? std::sqrt(doubts) / weight : 0; }
    /// It lies across what bends a tone: gain that follows the tone leaves it, and costs the tone nothing.
    [[nodiscard]] bool IsOfGain() const { return std::abs(Mean().imag()) > 2 * std::abs(Mean().real()) + 2 * Doubt(); }
};

/// Lines that were not sent, at one input.
struct LineFindings {
    LevelTally harmonics;                         ///< of its tones, in parts of their power
    LevelTally beside;                            ///< the same between the harmonics
    std::array<LevelTally, kMains.size()> clear;  ///< of the harmonics that lie where these mains have none
    std::array<HarmonicTally, kHarmonics> harmonic;
    std::array<HumTally, kMains.size()> hum;    ///< as they are
    std::array<HumTally, kMains.size()> moved;  ///< as a recording has them that plays at another speed
    LevelTally floor;                           ///< mean square of noise, after what lies between all lines
};

/// Adds what a slot holds at `input`; `tone` is the slot's tone that is the input's own, or one past the last.
void AddLines(const History& history, const Reference& reference, const SlotSound& sound, const Placing& placing,
              std::size_t input, std::size_t tone, LineFindings& lines);

}  // namespace lineup::sound
