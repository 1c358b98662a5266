#pragma once

#include "Host/Lineup/Check/Sound/Follow/Due.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"

#include <vector>

namespace lineup::sound {

/// Whether a slot's tones are where they are due.
struct Presence {
    bool due = false;         ///< a tone is due at all
    std::size_t blocks = 0;   ///< that are in the recording
    std::size_t present = 0;  ///< those in which a tone that is due is there, at one input at least
    double first = 0;         ///< s: the first of them begins
    double last = 0;          ///< s: the last of them ends
    bool fromStart = false;   ///< the slot's first block is one of them
    bool toEnd = false;       ///< the slot's last block is one of them
};

[[nodiscard]] Presence PresenceOf(const SlotSound& sound, const DueTones& due);

}  // namespace lineup::sound
