#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Reader/DecodedPicture.h"

#include <array>
#include <cstddef>
#include <vector>

namespace lineup::picture {

/// A plane of 8-bit codes with fractions, and where it lies on the grid of the first plane: value (x, y) stands at
/// (x * stepX + offsetX, y * stepY + offsetY), in pixels from the middle of the picture's first one.
struct Plane {
    int width = 0;
    int height = 0;
    int stepX = 1;
    int stepY = 1;
    double offsetX = 0;
    double offsetY = 0;
    std::vector<float> values;

    [[nodiscard]] float At(int x, int y) const {
        return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

/// A frame to measure in.
struct Raster {
    int width = 0;
    int height = 0;
    int bits = 8;
    bool isRgb = false;
    std::vector<Plane> planes;  ///< 1 or 3

    /// The first plane's, for a picture without colour three times.
    [[nodiscard]] const Plane& PlaneOf(std::size_t component) const {
        return planes[planes.size() == 1 ? 0 : component];
    }
};

[[nodiscard]] Raster MakeRaster(const DecodedPicture& picture);

/// The same, made smaller by whole pixels until it is no wider than `most`: all planes of one size.
[[nodiscard]] Raster MakeSmall(const Raster& raster, int most);

}  // namespace lineup::picture
