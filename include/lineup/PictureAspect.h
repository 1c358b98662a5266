#pragma once

#include <array>
#include <string_view>

namespace lineup {

/// The shape of the whole picture, which with its size makes the shape of a pixel.
enum class PictureAspect {
    Auto,           ///< that of television's rasters for them (720x576 is 4:3), square pixels for all other sizes
    FourByThree,    ///< 4:3
    SixteenByNine,  ///< 16:9
    SquarePixels,   ///< as its size says
};

struct PictureAspectName {
    std::string_view name;
    PictureAspect aspect;
};

/// The shapes as command lines call them; the one that is used unasked first.
inline constexpr std::array<PictureAspectName, 4> kPictureAspectNames = {
    {{"auto", PictureAspect::Auto},
     {"4:3", PictureAspect::FourByThree},
     {"16:9", PictureAspect::SixteenByNine},
     {"square", PictureAspect::SquarePixels}},
};

}  // namespace lineup
