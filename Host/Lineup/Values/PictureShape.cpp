#include "Host/Lineup/Values/PictureShape.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace lineup {
inline namespace parts {

namespace {

constexpr Rational kFourByThree{4, 3};
constexpr Rational kSixteenByNine{16, 9};

/// A raster of television whose pixels are not square.
struct Raster {
    int width = 0;
    int height = 0;
    int cleanWidth = 0;  ///< in standard definition 704 of 720 pixels, and 480 of 486 lines, are the picture
    int cleanHeight = 0;
    Rational aspect;  ///< of the clean part, unless somebody says otherwise
};

constexpr std::array<Raster, 7> kRasters = {{
    {720, 576, 704, 576, kFourByThree},        // 625 lines
    {704, 576, 704, 576, kFourByThree},        // without the edges
    {720, 480, 704, 480, kFourByThree},        // 525 lines
    {704, 480, 704, 480, kFourByThree},        // without the edges
    {720, 486, 704, 480, kFourByThree},        // with all lines
    {1440, 1080, 1440, 1080, kSixteenByNine},  // three quarters of HD's pixels
    {1280, 1080, 1280, 1080, kSixteenByNine},  // two thirds of them
}};

Rational Reduced(Rational ratio) {
    const int common = std::gcd(ratio.num, ratio.den);
    return {ratio.num / common, ratio.den / common};
}

PictureShape Stretched(int cleanWidth, int cleanHeight, Rational aspect) {
    return {Reduced({aspect.num * cleanHeight, aspect.den * cleanWidth}), cleanWidth, cleanHeight};
}

}  // namespace

PictureShape ShapeOf(int width, int height, PictureAspect aspect) {
    const auto* const raster =
        std::ranges::find_if(kRasters, [&](const Raster& row) { return row.width == width && row.height == height; });
    const bool known = raster != kRasters.end();
    const bool square = aspect == PictureAspect::SquarePixels || (aspect == PictureAspect::Auto && !known);
    if (square) {
        return {{1, 1}, width, height};
    }
    Rational shape = aspect == PictureAspect::SixteenByNine ? kSixteenByNine : kFourByThree;
    if (aspect == PictureAspect::Auto) {
        shape = raster->aspect;
    }
    return known ? Stretched(raster->cleanWidth, raster->cleanHeight, shape) : Stretched(width, height, shape);
}

}  // namespace parts
}  // namespace lineup
