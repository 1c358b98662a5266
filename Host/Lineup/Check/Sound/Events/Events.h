#pragma once

#include "Host/Lineup/Check/Sound/Events/SoundEvent.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <cstddef>
#include <vector>

namespace lineup::sound {

/// Looks for what happened within a slot: blocks that its tones do not explain while they explain those around them.
/// There the samples are held against the tones before and after, which tells where it begins and ends, and what it is.
/// The blocks are marked as not there, so that they spoil no measurement.
/// A jump is known but for whole periods of each tone.
[[nodiscard]] std::vector<SoundEvent> FindEvents(const History& history, const Reference& reference,
                                                 const SlotMeter& meter, SlotSound& sound);

/// Marks those blocks alone, without a look at what happened in them.
void LeaveOutDamage(const History& history, SlotSound& sound);

}  // namespace lineup::sound
