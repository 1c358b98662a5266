#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Reader/DecodedPicture.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lineup::picture {

/// A plane of a frame, and where it lies on the grid of the first plane: value (x, y) stands at
/// (x * stepX + offsetX, y * stepY + offsetY), in pixels from the middle of the picture's first one.
struct Plane {
    int width = 0;
    int height = 0;
    int stepX = 1;
    int stepY = 1;
    double offsetX = 0;
    double offsetY = 0;
    float scale = 1;  ///< from the file's codes to 8-bit ones with fractions
    std::span<const std::uint16_t> codes;

    /// An 8-bit code with fractions.
    [[nodiscard]] float Value(std::uint16_t code) const { return static_cast<float>(code) * scale; }

    [[nodiscard]] float At(int x, int y) const {
        return Value(
            codes[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)]);
    }
};

/// A frame to measure in, whose codes are those of the picture that it was made of.
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

/// `picture` must outlive it.
[[nodiscard]] Raster MakeRaster(const DecodedPicture& picture);

/// A frame to search in: three planes of one size, 8-bit codes with fractions.
struct SmallRaster {
    int width = 0;
    int height = 0;
    std::array<std::vector<float>, 3> planes;

    [[nodiscard]] float At(std::size_t plane, int x, int y) const {
        return planes[plane]
                     [static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

/// The means of squares of whole pixels, of a size that makes it no wider and no higher than `most`.
[[nodiscard]] SmallRaster MakeSmall(const Raster& raster, int most);

}  // namespace lineup::picture
