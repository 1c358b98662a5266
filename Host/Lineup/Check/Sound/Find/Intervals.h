#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Find/ToneTrack.h"

#include <cstddef>
#include <span>
#include <vector>

namespace lineup::sound {

/// A stretch with an edge at both ends: a tone with silence around it, or silence with the same tone around it.
struct Interval {
    bool gap = false;
    double frequency = 0;  ///< Hz
    double start = 0;      ///< s
    double end = 0;
    std::size_t input = 0;  ///< of what was found
    double shortest = 0;    ///< of a gap: the shorter one of its neighbours, s

    [[nodiscard]] double Length() const { return end - start; }
};

/// Those of one cycle, each once, whatever channels have it; `start` lies in the cycle.
[[nodiscard]] std::vector<Interval> IntervalsOf(const Reference& reference);

/// Those that were found.
[[nodiscard]] std::vector<Interval> IntervalsOf(std::span<const ToneRun> runs);

}  // namespace lineup::sound
