#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lineup::sound {

/// What the phase of one tone says of a jump of time: `lost` s, and any number of periods more or less.
struct PhaseJump {
    double lost = 0;
    double period = 0;  ///< s
};

/// Something that happened at one place.
struct SoundEvent {
    /// What says most comes first.
    enum class Kind : std::uint8_t {
        Dropout,    ///< `amount` seconds are silent or damaged
        Jump,       ///< time jumps: `amount` seconds were lost, or, below 0, came twice
        LevelStep,  ///< the level goes by `amount` dB and stays there
        Click,      ///< `amount` is its height
        Dip,        ///< the level goes by `amount` dB and comes back: gain that follows what is heard elsewhere
    };

    Kind kind = Kind::Click;
    double at = 0;  ///< s from the start of the recording
    double amount = 0;
    std::vector<std::size_t> inputs;
    std::vector<PhaseJump> phases = {};  ///< of a jump: one an input
    bool sure = true;                    ///< of a jump: edges after it say how far
};

}  // namespace lineup::sound
