#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Picture/FloatPicture.h"

#include <array>
#include <cstddef>

namespace lineup {
inline namespace parts {

/// What the three planes of a converted picture hold.
enum class ColourCoding {
    Ycc601,  ///< Y', Cb, Cr with the BT.601 matrix
    Ycc709,  ///< Y', Cb, Cr with the BT.709 matrix, of the same R'G'B'
    Rgb,     ///< R', G', B'
};

/// How a converted picture is stored.
struct PlaneFormat {
    ColourCoding coding = ColourCoding::Ycc709;
    int bits = 10;               ///< 8: one byte a value; 9 to 16: two, in the machine's order
    bool fullRange = false;      ///< 0 to the greatest code, instead of 16 to 235 (240) and what is beyond
    int subsampleWidth = 0;      ///< log2: 1 for 4:2:2 and 4:2:0
    int subsampleHeight = 0;     ///< log2: 1 for 4:2:0
    bool interlaced = false;     ///< each field has chroma of its own lines
    bool chromaCentred = false;  ///< chroma lies between its two pixels instead of on the left one
};

/// Where a plane goes. Data and strides must be multiples of 64 bytes.
struct PlaneMemory {
    void* data = nullptr;
    std::ptrdiff_t strideBytes = 0;
};

/// Converts a BT.601 picture in floating point, then rounds to the nearest code, without dither. In legal
/// range what lies below black and above white is kept as far as the codes go; in full range it is clipped.
/// Chroma is halved with a triangle filter. Throws Error when the conversion cannot be made.
LINEUP_API void ConvertColour(const FloatPicture& picture, const PlaneFormat& format,
                              const std::array<PlaneMemory, 3>& planes);

}  // namespace parts
}  // namespace lineup
