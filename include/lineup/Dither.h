#pragma once

#include <cstdint>

namespace lineup {

/// What is done about the error of rounding samples to 16 bits.
enum class Dither : std::uint8_t {
    None,        ///< nothing: each sample is the nearest step
    Triangular,  ///< noise of up to one step goes in first, and the error is noise
};

}  // namespace lineup
