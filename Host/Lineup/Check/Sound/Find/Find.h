#pragma once

#include "Host/Lineup/Check/Sound/Find/Placing.h"
#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Find/ToneTrack.h"

#include <optional>
#include <span>

namespace lineup::sound {

/// A sequence that the tones of a recording make up.
struct Sighting {
    const Reference* reference = nullptr;
    Placing placing;   ///< to some milliseconds; `start` is that of the first cycle that was seen
    int matched = 0;   ///< stretches that are where they should be, each once
    int missed = 0;    ///< those that are not, between the first and the last that are
    double first = 0;  ///< s: the first that is where it should be begins
    double last = 0;   ///< s: the last one ends
};

/// The sequence that fits the tones best, if one does.
[[nodiscard]] std::optional<Sighting> FindIdent(std::span<const ToneRun> runs, std::span<const Reference> references);

}  // namespace lineup::sound
