#pragma once

#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"

#include <complex>
#include <cstddef>
#include <optional>

namespace lineup::sound {

/// Where a tone begins or ends at an input.
struct EdgeSought {
    std::size_t input = 0;
    double at = 0;         ///< s of the recording, where it should be
    bool rises = false;    ///< the tone begins
    double frequency = 0;  ///< Hz, in the recording
    std::complex<double>
        gain;             ///< the tone: the imaginary part of gain * exp(2 pi i * frequency * t), t of the recording
    double phase = 0;     ///< of the tone that was sent, where it begins or ends, radians
    double reach = 0.08;  ///< s on both sides; no other edge lies there
};

/// How many seconds late the edge is. The tone is multiplied with itself and summed: the sum is the time for which it
/// sounds, whatever a filter has made of the edge, and noise adds nothing to it. Empty where the tone sounds all
/// along, or not at all, or where the recording does not reach.
[[nodiscard]] std::optional<double> EdgeDelay(const History& history, const Placing& placing, const EdgeSought& edge);

}  // namespace lineup::sound
