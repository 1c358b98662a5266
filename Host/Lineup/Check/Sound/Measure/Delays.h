#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/Cells.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace lineup::sound {

/// An edge of a burst, and how late it is.
struct LateEdge {
    double at = 0;    ///< s of the recording, where it is due
    double late = 0;  ///< s
    double weight = 1;
    double frequency = 0;  ///< Hz: of the tone
    bool rises = false;    ///< the tone begins
    bool shared = false;   ///< another channel sends the same tone in that slot
    double doubt = 0;      ///< s, standard deviation: what noise moves it by
};

/// How late an input is by all its edges.
struct AgreedDelay {
    double late = 0;     ///< s
    bool agree = false;  ///< they are near enough to each other to know it by
    double doubt = 0;    ///< s: it may be anywhere so near
};

/// By the median of the edges; where those do not agree, by some of them. After a lossy codec by bursts with both their
/// ends: what a codec takes from a tone makes it begin late and end early by as much. Where noise moves no edge by
/// much, by the ends of tones that all begin early, for a limiter lets the beginnings through and has settled at the
/// ends; or by tones that no other channel has at the same time, for one that leaks moves the edges of its own. Empty
/// without edges.
[[nodiscard]] std::optional<AgreedDelay> AgreeOnDelay(const std::vector<LateEdge>& edges, bool lossy);

/// How many seconds later than the placing has it a channel's bursts begin and end at `input` in this slot, each edge
/// by itself. The placing and `delay` are those that the slot was measured with; the result counts from there. Edges of
/// tones whose phase floats are known less well, and weigh next to nothing.
[[nodiscard]] std::vector<LateEdge> EdgeDelays(const History& history, const Reference& reference,
                                               const SlotSound& sound, const Placing& placing, double delay,
                                               std::size_t input, std::size_t channel);

/// A channel's delay and polarity at an input.
struct DelayAndPolarity {
    double delay = 0;    ///< s, from where the cells were measured
    int polarity = 0;    ///< 1 or -1; 0 where it cannot be known
    bool exact = false;  ///< by the phase of its tones; else by its edges alone
};

/// What the phases of a channel's tones say, near to `around`. Where edges have told that, they are right to
/// kEdgesKnow and their `doubt`, s; where they have not, the tone may be a quarter of its period away, and no more.
[[nodiscard]] DelayAndPolarity DelayOf(const Cells& cells, const Reference& reference, std::size_t input,
                                       std::size_t channel, double pitch, double around, std::optional<double> doubt);

/// s: below half a period of 2 kHz
inline constexpr double kEdgesKnow = 0.00024;

}  // namespace lineup::sound
