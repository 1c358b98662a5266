#pragma once

#include "Host/Lineup/Check/Sound/Events/Events.h"
#include "Host/Lineup/Check/Sound/Events/SoundEvent.h"
#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <span>
#include <vector>

namespace lineup::sound {

/// Looks for events where slots meet: a tone of one channel may sound on while that of another begins or ends.
class Across {
public:
    /// The history must outlive it.
    Across(const History& history, const Reference& reference);

    /// Adds those around the end of slot `number`, placed as `meter` is, that are not among `events` or `known`.
    void AddEvents(const SlotMeter& meter, const SlotNumber& number, std::span<const SoundEvent> known,
                   std::vector<SoundEvent>& events) const;

private:
    const History* mHistory;
    Reference mReference;       // slots are the stretches around the ends of slots
    std::vector<bool> mGoesOn;  // whether a tone does, an end
};

/// Whether one of `events` is at the place; a dip of the gain hides no other.
[[nodiscard]] bool IsKnown(std::span<const SoundEvent> events, double at);

}  // namespace lineup::sound
