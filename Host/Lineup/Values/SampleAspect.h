#pragma once

#include <lineup/Rational.h>

namespace lineup {

/// The shape of a pixel: that of the standard-definition rasters 720x480, 720x486 and 720x576 for a 4:3
/// picture, square for all others.
constexpr Rational SampleAspect(int width, int height) noexcept {
    constexpr Rational kSquare{1, 1};
    constexpr Rational kPixelOf525{10, 11};
    constexpr Rational kPixelOf625{12, 11};
    if (width != 720) {
        return kSquare;
    }
    if (height == 480 || height == 486) {
        return kPixelOf525;
    }
    return height == 576 ? kPixelOf625 : kSquare;
}

}  // namespace lineup
