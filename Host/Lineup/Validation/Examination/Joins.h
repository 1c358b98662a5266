#pragma once

#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/Random.h"

#include <cstdint>
#include <vector>

namespace lineup::validation {

/// How far a sample or peak may be from itself when it is read in a piece: a thousandth of the loudest one, which is
/// more than a phase that is rounded to single precision moves by within a second.
[[nodiscard]] float PieceBound(const Samples& samples);

/// The ends of `pieces` pieces that make up a stretch of `count` samples, at multiples of `grid`; in
/// order. Some pieces are a sample long, and some are empty.
[[nodiscard]] std::vector<std::uint32_t> DrawCuts(Random& random, std::uint32_t count, std::uint32_t grid, int pieces);

}  // namespace lineup::validation
