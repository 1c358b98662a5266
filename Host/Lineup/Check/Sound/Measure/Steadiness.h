#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/Tally.h"

namespace lineup::sound {

/// How the speed wanders from block to block. Noise moves the amplitude of a tone as much as its phase; wow and flutter
/// move its phase alone.
struct Steadiness {
    LevelTally squares;  ///< of slots: of what the speed is off in a block, relative, less what noise makes of it

    /// Relative, r.m.s.
    [[nodiscard]] double Wander() const;
};

/// Adds the tone of a slot at an input.
void AddSteadiness(const SlotSound& sound, const Reference& reference, double pitch, std::size_t input,
                   std::size_t tone, Steadiness& steadiness);

}  // namespace lineup::sound
