#pragma once

#include "Host/Lineup/Check/Sound/Find/Find.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"

#include <span>
#include <vector>

namespace lineup::sound {

/// The placing with what its speed swings by, as the turns of phase from block to block in these slots have it: a swing
/// of one frequency, where that explains most of them. Unchanged where the speed is steady, or wanders in other ways.
[[nodiscard]] Placing TuneWander(const History& history, const Reference& reference, const Placing& placing,
                                 std::span<const double> delays, std::span<const SlotNumber> slots);

}  // namespace lineup::sound
