#pragma once

#include "Host/Lineup/Check/Sound/Follow/Survey.h"
#include "Host/Lineup/Check/Sound/Measure/Cells.h"

#include <cstddef>
#include <vector>

namespace lineup::sound {

/// How loud each tone of each slot is due at each input, after what a survey found.
class DueTones {
public:
    DueTones(const Reference& reference, const Survey& survey);

    /// Amplitude, full scale is 1.
    [[nodiscard]] double At(std::size_t slot, std::size_t tone, std::size_t input) const {
        return mAmplitudes[slot][tone][input];
    }
    /// The loudest of a slot at any input.
    [[nodiscard]] double Loudest(std::size_t slot) const;
    /// Whether any tone is due in a slot: what is 40 dB below the loudest of all is left of something else.
    [[nodiscard]] bool AnyIn(std::size_t slot) const;
    /// The tone of a slot that is loudest at `input`; it must have one.
    [[nodiscard]] std::size_t LoudestTone(std::size_t slot, std::size_t input) const;

private:
    std::vector<std::vector<std::vector<double>>> mAmplitudes;
};

}  // namespace lineup::sound
