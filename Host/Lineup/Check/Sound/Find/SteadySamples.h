#pragma once

#include "Host/Lineup/Check/Sound/Find/Placing.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lineup::sound {

/// The narrow samples [first, end) of an input as they would be at a steady speed, with what stands in their middle in
/// its place. Where no speed wanders they are the history's own; `buffer` holds them otherwise. They must be there.
[[nodiscard]] std::span<const float> SteadySamples(const History& history, const Placing& placing, std::size_t input,
                                                   std::int64_t first, std::int64_t end, std::vector<float>& buffer);

}  // namespace lineup::sound
