#pragma once

#include "Host/Lineup/Check/Sound/Events/SoundEvent.h"
#include "Host/Lineup/Check/Sound/Find/Placing.h"
#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Find/ToneRuns.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <optional>
#include <span>
#include <vector>

namespace lineup::sound {

/// Samples: time does not jump by less.
inline constexpr double kLeastJump = 0.5;

/// How late a tone begins or ends, and where.
struct EdgeVote {
    double at = 0;    ///< s of the recording
    double late = 0;  ///< s against the placing
    std::size_t input = 0;
    bool rises = false;  ///< the tone begins
};

/// The edges of tones that were followed, each against the nearest one that is due: to some milliseconds, and however
/// far away they are.
[[nodiscard]] std::vector<EdgeVote> RoughEdges(std::span<const ToneRun> runs, const Reference& reference,
                                               const Placing& placing);

/// Whether the edges are all as late as each other: time neither jumps nor goes at another tempo.
[[nodiscard]] bool LieOnOneLevel(std::span<const EdgeVote> edges);
/// They are so far apart that the placing cannot be right.
[[nodiscard]] bool LieApart(std::span<const EdgeVote> edges);

/// How much was lost at `at`, by the edges before and after: those of inputs that have both, else all. Empty where one
/// side has none.
[[nodiscard]] std::optional<double> LostBetween(std::span<const EdgeVote> edges, double at);

/// The same, beginnings against beginnings and ends against ends where an input has both: a limiter lets beginnings
/// through and makes them early. Of edges that are measured, among which no chance one is.
[[nodiscard]] std::optional<double> LostBetweenAlike(std::span<const EdgeVote> edges, double at);

/// The place where edges of followed tones are suddenly later or earlier, by what they jump: between two of them. Empty
/// where they lie on one level.
[[nodiscard]] std::optional<TimeJump> FindStep(std::vector<EdgeVote> edges);

/// How far time jumps where `event` has it: phases know that but for whole periods, edges which of those it is. `rough`
/// are those of followed tones; with the jump in its place, those of `slots` around it are measured. Writes the amount
/// into the event, and whether edges knew it. Nothing is lost where edges say so and phases are turned over.
[[nodiscard]] TimeJump ResolveJump(const History& history, const Reference& reference, const Placing& placing,
                                   std::span<const EdgeVote> rough, std::span<const SlotNumber> slots,
                                   SoundEvent& event);

}  // namespace lineup::sound
