#pragma once

#include "Host/Lineup/Check/Sound/Events/SoundEvent.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <span>
#include <vector>

namespace lineup::sound {

/// Single samples that are wrong, at one input: above the band of the tones hardly anything else is heard. What several
/// inputs have at once is left out, for time may have jumped. Call it before FindEvents takes blocks away.
[[nodiscard]] std::vector<SoundEvent> FindClicks(const History& history, const SlotSound& sound);

/// Adds the clicks that do not belong to what is known or was found of the slot.
void AddClicks(std::span<const SoundEvent> clicks, std::span<const SoundEvent> known, std::vector<SoundEvent>& events);

}  // namespace lineup::sound
