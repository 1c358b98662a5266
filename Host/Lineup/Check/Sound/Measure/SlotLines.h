#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"
#include "Host/Lineup/Check/Sound/Signal/Tally.h"

#include <array>
#include <cstddef>

namespace lineup::sound {

/// What the mains leave in a recording.
struct HumTally {
    LevelTally power;   ///< mean square of its lines
    LevelTally beside;  ///< the same between them
};

/// The mains that there are, Hz.
inline constexpr std::array<double, 2> kMains = {50, 60};

/// Lines that were not sent, at one input.
struct LineFindings {
    LevelTally harmonics;  ///< of its tones, in parts of their power
    LevelTally beside;     ///< the same between the harmonics
    std::array<HumTally, kMains.size()> hum;
};

/// Adds what a slot holds at `input`; `tone` is the slot's tone that is the input's own, or one past the last.
void AddLines(const History& history, const Reference& reference, const SlotSound& sound, double pitch,
              std::size_t input, std::size_t tone, LineFindings& lines);

}  // namespace lineup::sound
