#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Follow/Survey.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <optional>

namespace lineup::sound {

/// A low tone of a sequence that has another pitch than the plug-in gives it.
struct LowTone {
    double sent = 0;   ///< Hz
    double found = 0;  ///< Hz, at the sequence's speed
};

/// The low tone that arrives at another pitch than it was sent at, if there is one.
[[nodiscard]] std::optional<LowTone> FindOtherLowTone(const History& history, const Reference& reference,
                                                      const Survey& survey);

/// The same sequence with that tone in place of its own.
[[nodiscard]] Reference WithLowTone(const Reference& reference, const LowTone& tone);

}  // namespace lineup::sound
