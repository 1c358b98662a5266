#pragma once

#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <span>
#include <vector>

namespace lineup::sound {

/// How far the pitch is off, in parts of it, as each tone of a slot has it; longer and louder ones weigh more.
[[nodiscard]] std::vector<Vote> PitchVotes(const SlotSound& sound, const Reference& reference, double pitch);

/// The placing with the pitch that the tones of these slots have. The tempo goes along unless it is another.
[[nodiscard]] Placing TunePitch(const History& history, const Reference& reference, const Placing& placing,
                                std::span<const double> delays, std::span<const SlotNumber> slots);

}  // namespace lineup::sound
