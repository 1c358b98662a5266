#pragma once

#include "Tests/Src/BarsAndToneImporter/ExpectedCard.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The pictures that the cards come to, pixel by pixel and with no notion of fills.
namespace test {

using Pixel8 = std::array<std::uint8_t, 4>;  // V, U, Y, A
using PixelFloat = std::array<float, 4>;     // V, U, Y, A

/// A picture: pixel x of line y, line 0 at the top, is pixels[y * width + x].
template <class Pixel>
struct Picture {
    int width;
    int height;
    std::vector<Pixel> pixels;

    [[nodiscard]] const Pixel& At(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
    }
};

inline PixelFloat ToFloatPixel(const Pixel8& vuya) {
    return {(static_cast<float>(vuya[0]) - 128.0F) / 224.0F, (static_cast<float>(vuya[1]) - 128.0F) / 224.0F,
            (static_cast<float>(vuya[2]) - 16.0F) / 219.0F, static_cast<float>(vuya[3]) / 255.0F};
}

/// The bar of a card that pixel (x, y) shows: the last one that covers it. Null when none does.
template <std::size_t kBars>
const ExpectedBar* BarAt(const std::array<ExpectedBar, kBars>& card, int width, int height, int x, int y) {
    const auto edge = [](double fraction, int size) { return static_cast<int>(fraction * size); };
    for (std::size_t i = kBars; i-- > 0;) {
        const ExpectedBar& bar = card.at(i);
        if (x >= edge(bar.left, width) && x < edge(bar.right, width) && y >= edge(bar.top, height) &&
            y < edge(bar.bottom, height)) {
            return &bar;
        }
    }
    return nullptr;
}

inline Picture<Pixel8> StandardDefinitionPicture(int width, int height) {
    Picture<Pixel8> picture{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.pixels.push_back(BarAt(kStandardDefinitionCard, width, height, x, y)->vuya);
        }
    }
    return picture;
}

inline PixelFloat HighDefinitionPixel(int width, int height, int x, int y) {
    const ExpectedBar& bar = *BarAt(kHighDefinitionCard, width, height, x, y);
    if (bar.vuya != kRampBytes) {
        return ToFloatPixel(bar.vuya);
    }
    const int left = static_cast<int>(bar.left * width);
    const int right = static_cast<int>(bar.right * width);
    return {0.0F, 0.0F, static_cast<float>(x - left) * static_cast<float>(1.0 / (right - left)), 1.0F};
}

inline Picture<PixelFloat> HighDefinitionPicture(int width, int height) {
    Picture<PixelFloat> picture{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.pixels.push_back(HighDefinitionPixel(width, height, x, y));
        }
    }
    return picture;
}

}  // namespace test
