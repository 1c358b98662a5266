#pragma once

#include "Host/Lineup/Check/Sound/Measure/Delays.h"

#include <optional>
#include <vector>

namespace lineup::sound {

/// The edges of each input.
using EdgesOfInputs = std::vector<std::vector<LateEdge>>;

/// How far edges lie from where those of their input usually lie, s: the median.
[[nodiscard]] double ScatterOfEdges(const EdgesOfInputs& edges);

/// Edges that come ever later, or earlier: another tempo than the placing's.
struct EdgeTrend {
    double slope = 0;   ///< s a second
    double middle = 0;  ///< s: where they are `late` on the whole
    double late = 0;    ///< s
};

/// The trend of the edges, where it explains them far better than one place at which time jumps would, and leaves less
/// than half of `scatter`, s. Retiming that keeps the pitch has one: it moves tones by whole periods, so that phases
/// do not know of it.
[[nodiscard]] std::optional<EdgeTrend> FindTrend(const EdgesOfInputs& edges, double scatter);

}  // namespace lineup::sound
