#pragma once

#include <lineup/Api.h>

#include <cstdint>
#include <span>

namespace lineup {
inline namespace parts {

/// Adds noise to samples that are to be rounded to 16 bits: triangular, up to one step to either side, so that what is
/// rounded away is noise too and follows no tone. A sample's noise depends on its channel and its position in the clip
/// alone: a file is the same each time, wherever it is cut. Samples of 0 stay, and silence with them.
LINEUP_API void AddDither(std::span<float> samples, std::int64_t position, int channel);

}  // namespace parts
}  // namespace lineup
