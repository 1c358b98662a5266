#pragma once

#include <lineup/Api.h>
#include <lineup/PictureAspect.h>
#include <lineup/Rational.h>

namespace lineup {
inline namespace parts {

/// How a picture is to be shown: the shape of a pixel, and the part of the raster, in its middle, that has the
/// picture's shape.
struct PictureShape {
    Rational sampleAspect{1, 1};  ///< a pixel's width to its height
    int cleanWidth = 0;           ///< pixels
    int cleanHeight = 0;

    bool operator==(const PictureShape&) const = default;
};

/// That of a picture of width x height pixels.
[[nodiscard]] LINEUP_API PictureShape ShapeOf(int width, int height, PictureAspect aspect);

}  // namespace parts
}  // namespace lineup
