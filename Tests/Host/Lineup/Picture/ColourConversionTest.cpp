#include "Host/Lineup/Picture/ColourConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

using lineup::ColourCoding;
using lineup::ConvertColour;
using lineup::FloatPicture;
using lineup::PlaneFormat;

using Triple = std::array<double, 3>;

// A picture of one colour.
FloatPicture Flat(const Triple& ycc, int width = 8, int height = 2) {
    FloatPicture picture(width, height);
    for (int plane = 0; plane < FloatPicture::kPlanes; ++plane) {
        for (int line = 0; line < height; ++line) {
            std::ranges::fill(picture.Line(plane, line), static_cast<float>(ycc.at(static_cast<std::size_t>(plane))));
        }
    }
    return picture;
}

// Three planes of up to 16 x 4 values of one or two bytes, lines 64 bytes apart.
class Planes {
public:
    std::array<lineup::PlaneMemory, 3> Memory() {
        std::array<lineup::PlaneMemory, 3> memory;
        for (std::size_t i = 0; i < 3; ++i) {
            memory.at(i) = {mBytes.at(i).data(), 64};
        }
        return memory;
    }
    [[nodiscard]] int Byte(std::size_t plane, std::size_t x, std::size_t line = 0) const {
        return mBytes.at(plane).at(line * 64 + x);
    }
    [[nodiscard]] int Word(std::size_t plane, std::size_t x, std::size_t line = 0) const {
        return Byte(plane, 2 * x, line) + 256 * Byte(plane, 2 * x + 1, line);
    }

private:
    struct alignas(64) Bytes : std::array<std::uint8_t, 256> {};
    std::array<Bytes, 3> mBytes{};
};

// The formulas of the standards, with Kr and Kb of either matrix.
Triple ToRgb601(const Triple& ycc) {
    const double r = ycc[0] + 2 * (1 - 0.299) * ycc[2];
    const double b = ycc[0] + 2 * (1 - 0.114) * ycc[1];
    const double g = (ycc[0] - 0.299 * r - 0.114 * b) / 0.587;
    return {r, g, b};
}
Triple ToYcc709(const Triple& rgb) {
    const double y = 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2];
    return {y, (rgb[2] - y) / (2 * (1 - 0.0722)), (rgb[0] - y) / (2 * (1 - 0.2126))};
}

TEST(ColourConversion, TakesEveryColourFrom601To709OverTheSameRgb) {
    const std::array<Triple, 5> codes = {
        {{161, 44, 142}, {131, 156, 44}, {84, 184, 198}, {35, 212, 114}, {58, 156, 98}}};
    for (const Triple& code : codes) {
        const Triple ycc601 = {(code[0] - 16) / 219, (code[1] - 128) / 224, (code[2] - 128) / 224};
        const Triple ycc709 = ToYcc709(ToRgb601(ycc601));
        Planes planes;
        ConvertColour(Flat(ycc601), {.coding = ColourCoding::Ycc709, .bits = 10}, planes.Memory());
        EXPECT_EQ(planes.Word(0, 3), std::lround(4 * (16 + 219 * ycc709[0]))) << code[0];
        EXPECT_EQ(planes.Word(1, 3), std::lround(4 * (128 + 224 * ycc709[1]))) << code[0];
        EXPECT_EQ(planes.Word(2, 3), std::lround(4 * (128 + 224 * ycc709[2]))) << code[0];
    }
}

TEST(ColourConversion, Gives75PercentYellowItsStandard709Codes) {
    Planes planes;
    ConvertColour(Flat({145 / 219.0, -84 / 224.0, 14 / 224.0}), {.coding = ColourCoding::Ycc709, .bits = 8},
                  planes.Memory());
    EXPECT_EQ(planes.Byte(0, 0), 168);
    EXPECT_EQ(planes.Byte(1, 0), 44);
    EXPECT_EQ(planes.Byte(2, 0), 136);
}

TEST(ColourConversion, LeavesThe601CodesAsTheyAre) {
    Planes planes;
    ConvertColour(Flat({145 / 219.0, -84 / 224.0, 14 / 224.0}), {.coding = ColourCoding::Ycc601, .bits = 8},
                  planes.Memory());
    EXPECT_EQ(planes.Byte(0, 0), 161);
    EXPECT_EQ(planes.Byte(1, 0), 44);
    EXPECT_EQ(planes.Byte(2, 0), 142);
}

TEST(ColourConversion, KeepsWhatLiesBelowBlackAndAboveWhite) {
    for (const auto coding : {ColourCoding::Ycc601, ColourCoding::Ycc709}) {
        Planes below;
        ConvertColour(Flat({-9 / 219.0, 0, 0}), {.coding = coding, .bits = 10}, below.Memory());
        EXPECT_EQ(below.Word(0, 0), 4 * 7);
        EXPECT_EQ(below.Word(1, 0), 512);
        Planes above;
        ConvertColour(Flat({235 / 219.0, 0, 0}), {.coding = coding, .bits = 10}, above.Memory());
        EXPECT_EQ(above.Word(0, 0), 4 * 251);
        EXPECT_EQ(above.Word(2, 0), 512);
    }
}

TEST(ColourConversion, ToFullRangeRgbClipsBelowBlackAndAboveWhite) {
    Planes below;
    ConvertColour(Flat({-9 / 219.0, 0, 0}), {.coding = ColourCoding::Rgb, .bits = 8, .fullRange = true},
                  below.Memory());
    Planes above;
    ConvertColour(Flat({1.05, 0, 0}), {.coding = ColourCoding::Rgb, .bits = 8, .fullRange = true}, above.Memory());
    for (std::size_t plane = 0; plane < 3; ++plane) {
        EXPECT_EQ(below.Byte(plane, 0), 0);
        EXPECT_EQ(above.Byte(plane, 0), 255);
    }
}

TEST(ColourConversion, ToRgbPutsRedGreenAndBlueInThatOrder) {
    // 100 % red: Y' = 0.299, Cb = -0.299 / 1.772, Cr = 0.5.
    Planes planes;
    ConvertColour(Flat({0.299, -0.299 / 1.772, 0.5}), {.coding = ColourCoding::Rgb, .bits = 8, .fullRange = true},
                  planes.Memory());
    EXPECT_EQ(planes.Byte(0, 0), 255);
    EXPECT_EQ(planes.Byte(1, 0), 0);
    EXPECT_EQ(planes.Byte(2, 0), 0);
}

TEST(ColourConversion, RoundsToTheNearestCodeWithoutDither) {
    Planes planes;
    ConvertColour(Flat({(100.4 - 16) / 219, 0, 0}, 16, 4), {.coding = ColourCoding::Ycc601, .bits = 8},
                  planes.Memory());
    for (std::size_t line = 0; line < 4; ++line) {
        for (std::size_t x = 0; x < 16; ++x) {
            EXPECT_EQ(planes.Byte(0, x, line), 100);
        }
    }
}

// One column of chroma in a picture without any, at pixel 4.
FloatPicture ChromaColumn() {
    FloatPicture picture = Flat({0.5, 0, 0}, 16, 2);
    for (int line = 0; line < 2; ++line) {
        picture.Line(1, line)[4] = 0.4F;
    }
    return picture;
}

TEST(ColourConversion, HalvesChromaAroundEveryEvenPixel) {
    // A triangle of weights 1/4, 1/2, 1/4 about pixels 0, 2, 4, ...: half of 0.4 falls on the third value.
    Planes planes;
    ConvertColour(ChromaColumn(), {.coding = ColourCoding::Ycc601, .bits = 10, .subsampleWidth = 1}, planes.Memory());
    EXPECT_EQ(planes.Word(1, 1), 512);
    EXPECT_EQ(planes.Word(1, 2), 512 + std::lround(0.2 * 896));
    EXPECT_EQ(planes.Word(1, 3), 512);
}

TEST(ColourConversion, CanPutChromaBetweenItsTwoPixels) {
    // Pixel 4 is an equal neighbour of the third value, at 4.5, and a distant one of the second, at 2.5.
    Planes planes;
    ConvertColour(ChromaColumn(),
                  {.coding = ColourCoding::Ycc601, .bits = 10, .subsampleWidth = 1, .chromaCentred = true},
                  planes.Memory());
    EXPECT_EQ(planes.Word(1, 1), 512 + std::lround(0.125 * 0.4 * 896));
    EXPECT_EQ(planes.Word(1, 2), 512 + std::lround(0.375 * 0.4 * 896));
}

}  // namespace
