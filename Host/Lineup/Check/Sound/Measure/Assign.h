#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/Cells.h"

#include <complex>
#include <cstddef>
#include <optional>
#include <vector>

namespace lineup::sound {

/// What arrives at an input.
struct Arrival {
    bool sounds = false;                 ///< a tone of the sequence arrives
    std::optional<std::size_t> channel;  ///< the one that it is; empty where none arrives, or it cannot be told which
    double likeness = 0;                 ///< 1: its tones are where that channel's are, and nowhere else
    double gain = 0;                     ///< linear, against what was sent
};

/// Whether a slot was seen at `input` in which nothing but the channel sounds.
[[nodiscard]] bool WasHeardAlone(const Cells& cells, const Reference& reference, std::size_t input,
                                 std::size_t channel);

/// How loud each channel's tones are at `input`, linear against what was sent: by the slots in which it sounds alone,
/// and where there are none, by what the others leave of those in which it sounds with them. Phases must be those of
/// the input's own delay.
[[nodiscard]] std::vector<std::complex<double>> PartsOf(const Cells& cells, const Reference& reference,
                                                        std::size_t input);

/// How far noise may have moved each of PartsOf(): its standard deviation, by how much the blocks differ.
[[nodiscard]] std::vector<double> PartDoubts(const Cells& cells, const Reference& reference, std::size_t input);

/// What arrives at each input. Tones 40 dB below the loudest input's count as none. Where one input and one channel are
/// left over, they belong together.
[[nodiscard]] std::vector<Arrival> Assign(const Cells& cells, const Reference& reference, std::size_t inputs);

}  // namespace lineup::sound
