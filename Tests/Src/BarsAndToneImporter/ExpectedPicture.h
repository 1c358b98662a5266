#pragma once

#include "Host/Lineup/Validation/Probes/GuardedFrame.h"
#include "Tests/Src/BarsAndToneImporter/ExpectedCard.h"
#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// The pictures that the cards come to, pixel by pixel and without fills; and frame requests, compared with them.
namespace test {

using lineup::validation::GuardedFrame;

using Pixel8 = std::array<std::uint8_t, 4>;  // V, U, Y, A
using PixelFloat = std::array<float, 4>;     // V, U, Y, A

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

/// Pixel (x, y) of the card that frames of this kind of pixel show.
template <class Pixel>
Pixel CardPixel(int width, int height, int x, int y);

template <>
inline Pixel8 CardPixel<Pixel8>(int width, int height, int x, int y) {
    return BarAt(kStandardDefinitionCard, width, height, x, y)->vuya;
}

template <>
inline PixelFloat CardPixel<PixelFloat>(int width, int height, int x, int y) {
    const ExpectedBar& bar = *BarAt(kHighDefinitionCard, width, height, x, y);
    if (bar.vuya != kRampBytes) {
        return ToFloatPixel(bar.vuya);
    }
    const int left = static_cast<int>(bar.left * width);
    const int right = static_cast<int>(bar.right * width);
    return {0.0F, 0.0F, static_cast<float>(x - left) * static_cast<float>(1.0 / (right - left)), 1.0F};
}

template <class Pixel>
constexpr std::uint32_t kFormatOf = sizeof(Pixel) == 16 ? 0x37785556 : 0x78797576;

/// The result of a request for the card in `frame`.
inline std::int32_t SendFrame(const GuardedFrame& frame, int width, int height, std::uint32_t pixelFormat) {
    return Send(FrameRequest{.width = static_cast<std::int16_t>(width),
                             .height = static_cast<std::int16_t>(height),
                             .pixelFormat = pixelFormat,
                             .frame = frame.Handle()});
}

/// A frame that a request drew.
template <class Pixel>
GuardedFrame DrawFrame(int width, int height) {
    GuardedFrame frame({.width = width, .height = height, .pixelFormat = kFormatOf<Pixel>});
    EXPECT_EQ(SendFrame(frame, width, height, kFormatOf<Pixel>), 0);
    return frame;
}

/// Every pixel is the card's, bit for bit, and nothing beside the picture was written.
template <class Pixel>
testing::AssertionResult ShowsTheCard(const GuardedFrame& frame, int width, int height) {
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* pixel = frame.Row(height - 1 - y).data();
        for (int x = 0; x < width; ++x, pixel += sizeof(Pixel)) {
            const Pixel expected = CardPixel<Pixel>(width, height, x, y);
            if (std::memcmp(pixel, &expected, sizeof expected) != 0) {
                Pixel actual;
                std::memcpy(&actual, pixel, sizeof actual);
                return testing::AssertionFailure()
                       << "pixel " << x << ", " << y << " of " << width << " x " << height << " is "
                       << testing::PrintToString(actual) << ", not " << testing::PrintToString(expected);
            }
        }
    }
    const std::string outside = frame.WrittenOutside();
    return outside.empty() ? testing::AssertionSuccess() : testing::AssertionFailure() << outside;
}

/// Requests of this size show the cards of both formats.
inline testing::AssertionResult DrawsTheCards(int width, int height) {
    const auto eight = ShowsTheCard<Pixel8>(DrawFrame<Pixel8>(width, height), width, height);
    return eight ? ShowsTheCard<PixelFloat>(DrawFrame<PixelFloat>(width, height), width, height) : eight;
}

}  // namespace test
