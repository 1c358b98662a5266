#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <limits>

// What colour IR_FillWithColor leaves in a pixel, for each pair of formats.

namespace {

using Pixel8 = std::array<std::uint8_t, 4>;  // V, U, Y, A
using PixelFloat = std::array<float, 4>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

PixelFloat FloatOf(const Pixel8& colour) {
    PixelFloat pixel = {9.0F, 9.0F, 9.0F, 9.0F};
    IR_FillWithColor(pixel.data(), 16, 1, 1, kFillFormat_VUYA_32f, colour.data(), kFillFormat_VUYA_8u);
    return pixel;
}

Pixel8 CodesOf(const PixelFloat& colour) {
    Pixel8 pixel = {99, 99, 99, 99};
    IR_FillWithColor(pixel.data(), 4, 1, 1, kFillFormat_VUYA_8u, colour.data(), kFillFormat_VUYA_32f);
    return pixel;
}

TEST(FrameFillToFloat, MapsLegalRangeToZeroAndOne) {
    EXPECT_EQ(FloatOf({128, 128, 16, 0}), (PixelFloat{0.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(FloatOf({240, 16, 235, 255}), (PixelFloat{0.5F, -0.5F, 1.0F, 1.0F}));
}

TEST(FrameFillToFloat, KeepsWhatLiesBelowBlackAndAboveWhite) {
    EXPECT_EQ(FloatOf({128, 128, 0, 255})[2], -16.0F / 219.0F);
    EXPECT_EQ(FloatOf({128, 128, 7, 255})[2], -9.0F / 219.0F);
    EXPECT_EQ(FloatOf({128, 128, 255, 255})[2], 239.0F / 219.0F);
    EXPECT_EQ(FloatOf({255, 0, 16, 255})[0], 127.0F / 224.0F);
    EXPECT_EQ(FloatOf({255, 0, 16, 255})[1], -128.0F / 224.0F);
}

// One division, rounded once: the double quotient of two small integers rounds to the same float.
TEST(FrameFillToFloat, IsTheNearestFloatForEveryCode) {
    for (int code = 0; code < 256; ++code) {
        const auto c = static_cast<std::uint8_t>(code);
        const auto expected = [code](int zero, int span) { return static_cast<float>((code - zero) / double(span)); };
        EXPECT_EQ(FloatOf({c, c, c, c}),
                  (PixelFloat{expected(128, 224), expected(128, 224), expected(16, 219), expected(0, 255)}));
    }
}

TEST(FrameFillTo8Bit, GivesBackEveryCodeThatFloatWasMadeFrom) {
    for (int code = 0; code < 256; ++code) {
        const auto c = static_cast<std::uint8_t>(code);
        EXPECT_EQ(CodesOf(FloatOf({c, c, c, c})), (Pixel8{c, c, c, c}));
    }
}

// Y = 0.5 is code 125.5, which rounds up; alpha 0.5 is 127.5.
TEST(FrameFillTo8Bit, RoundsToTheNearestCodeAndHalvesUp) {
    EXPECT_EQ(CodesOf({0.0F, 0.0F, 0.5F, 0.5F}), (Pixel8{128, 128, 126, 128}));
    EXPECT_EQ(CodesOf({0.001F, -0.001F, 0.001F, 0.001F}), (Pixel8{128, 128, 16, 0}));
    EXPECT_EQ(CodesOf({0.003F, -0.003F, 0.003F, 0.003F}), (Pixel8{129, 127, 17, 1}));
}

TEST(FrameFillTo8Bit, ClipsToTheCodesThereAre) {
    EXPECT_EQ(CodesOf({2.0F, -2.0F, 2.0F, -2.0F}), (Pixel8{255, 0, 255, 0}));
    EXPECT_EQ(CodesOf({kInfinity, -kInfinity, 1e38F, -1e38F}), (Pixel8{255, 0, 255, 0}));
}

TEST(FrameFillTo8Bit, WritesTheLowestCodeForNotANumber) {
    EXPECT_EQ(CodesOf({kNaN, -kNaN, kNaN, kNaN}), (Pixel8{0, 0, 0, 0}));
}

TEST(FrameFill, KeepsEveryBitOfAColourThatNeedsNoConversion) {
    const PixelFloat colour = {std::bit_cast<float>(0x7F812345U), -0.0F, -kInfinity, 1e-45F};
    PixelFloat pixel = {};
    IR_FillWithColor(pixel.data(), 16, 1, 1, kFillFormat_VUYA_32f, colour.data(), kFillFormat_VUYA_32f);
    using Bits = std::array<std::uint32_t, 4>;
    EXPECT_EQ(std::bit_cast<Bits>(pixel), std::bit_cast<Bits>(colour));

    const Pixel8 codes = {0, 255, 7, 1};
    Pixel8 written = {};
    IR_FillWithColor(written.data(), 4, 1, 1, kFillFormat_VUYA_8u, codes.data(), kFillFormat_VUYA_8u);
    EXPECT_EQ(written, codes);
}

}  // namespace
