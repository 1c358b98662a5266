// Whole frames, drawn with the host's own services.
#include "Tests/Src/BarsAndToneImporter/ExpectedPicture.h"
#include "Tests/Support/GuardedFrame.h"
#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace {

using test::GuardedFrame;
using test::Picture;
using test::Pixel8;
using test::PixelFloat;

template <class Pixel>
constexpr std::uint32_t kFormatOf = sizeof(Pixel) == 16 ? 0x37785556 : 0x78797576;

template <class Pixel>
GuardedFrame Draw(int width, int height) {
    GuardedFrame frame(width, height, kFormatOf<Pixel>, sizeof(Pixel));
    EXPECT_EQ(test::Send(test::FrameRequest{.width = static_cast<std::int16_t>(width),
                                            .height = static_cast<std::int16_t>(height),
                                            .pixelFormat = kFormatOf<Pixel>,
                                            .frame = frame.Handle()}),
              0);
    return frame;
}

template <class Pixel>
Pixel PixelAt(const GuardedFrame& frame, std::size_t x, std::size_t y) {
    Pixel pixel;
    std::memcpy(&pixel, frame.Line(y).subspan(x * sizeof(Pixel)).data(), sizeof pixel);
    return pixel;
}

// Every pixel bit for bit; says which is the first that differs.
template <class Pixel>
testing::AssertionResult Shows(const GuardedFrame& frame, const Picture<Pixel>& picture) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const auto actual = PixelAt<Pixel>(frame, static_cast<std::size_t>(x), static_cast<std::size_t>(y));
            if (std::memcmp(&actual, &picture.At(x, y), sizeof actual) != 0) {
                return testing::AssertionFailure()
                       << "pixel " << x << ", " << y << " is " << testing::PrintToString(actual) << ", not "
                       << testing::PrintToString(picture.At(x, y));
            }
        }
    }
    return testing::AssertionSuccess();
}

// FNV-1a, 64 bits, over the picture's bytes from its top line down.
std::uint64_t Hash(const GuardedFrame& frame, int height) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        for (const std::uint8_t byte : frame.Line(y)) {
            hash = (hash ^ byte) * 0x100000001B3;
        }
    }
    return hash;
}

constexpr std::pair<int, int> kUsualSizes[] = {{720, 486}, {720, 576}, {1280, 720}, {1920, 1080}};

TEST(FrameRequest, ShowsTheStandardDefinitionCardInEightBits) {
    for (const auto& [width, height] : kUsualSizes) {
        const GuardedFrame frame = Draw<Pixel8>(width, height);
        EXPECT_TRUE(Shows(frame, test::StandardDefinitionPicture(width, height))) << width << " x " << height;
        EXPECT_TRUE(frame.GuardsIntact()) << width << " x " << height;
    }
}

TEST(FrameRequest, ShowsTheHighDefinitionCardInFloat) {
    for (const auto& [width, height] : kUsualSizes) {
        const GuardedFrame frame = Draw<PixelFloat>(width, height);
        EXPECT_TRUE(Shows(frame, test::HighDefinitionPicture(width, height))) << width << " x " << height;
        EXPECT_TRUE(frame.GuardsIntact()) << width << " x " << height;
    }
}

TEST(FrameRequest, CoversEveryPixelAtEverySmallSizeAndNoByteBesides) {
    for (int width = 1; width <= 48; ++width) {
        for (const int height : {1, 2, 3, 4, 7, 12, 33}) {
            const GuardedFrame eight = Draw<Pixel8>(width, height);
            EXPECT_TRUE(Shows(eight, test::StandardDefinitionPicture(width, height))) << width << " x " << height;
            EXPECT_TRUE(eight.GuardsIntact()) << width << " x " << height;
            const GuardedFrame deep = Draw<PixelFloat>(width, height);
            EXPECT_TRUE(Shows(deep, test::HighDefinitionPicture(width, height))) << width << " x " << height;
            EXPECT_TRUE(deep.GuardsIntact()) << width << " x " << height;
        }
    }
}

TEST(FrameRequest, CoversVeryWideAndVeryTallFrames) {
    for (const auto& [width, height] : {std::pair{32767, 3}, std::pair{3, 32767}}) {
        const GuardedFrame eight = Draw<Pixel8>(width, height);
        EXPECT_TRUE(Shows(eight, test::StandardDefinitionPicture(width, height)));
        const GuardedFrame deep = Draw<PixelFloat>(width, height);
        EXPECT_TRUE(Shows(deep, test::HighDefinitionPicture(width, height)));
        EXPECT_TRUE(eight.GuardsIntact() && deep.GuardsIntact());
    }
}

TEST(FrameRequest, DrawsTheSameBytesEveryTime) {
    EXPECT_EQ(Hash(Draw<Pixel8>(720, 486), 486), 0xF2BCC3471C1DFDA5U);
    EXPECT_EQ(Hash(Draw<Pixel8>(720, 576), 576), 0x37B335D2022931A5U);
    EXPECT_EQ(Hash(Draw<Pixel8>(1920, 1080), 1080), 0x1002689E1EF8C3E5U);
    EXPECT_EQ(Hash(Draw<PixelFloat>(1280, 720), 720), 0x9BF94657EC4062A2U);
    EXPECT_EQ(Hash(Draw<PixelFloat>(1920, 1080), 1080), 0xA00A676FDE10CA55U);
}

TEST(FrameRequest, DrawsTheSameFrameOverWhateverTheBufferHeld) {
    const GuardedFrame frame = Draw<PixelFloat>(320, 180);
    const std::uint64_t once = Hash(frame, 180);
    EXPECT_EQ(
        test::Send(test::FrameRequest{.width = 320, .height = 180, .pixelFormat = 0x37785556, .frame = frame.Handle()}),
        0);
    EXPECT_EQ(Hash(frame, 180), once);
}

TEST(FrameRequest, PutsYellowSecondFromTheLeftInStandardDefinition) {
    const GuardedFrame frame = Draw<Pixel8>(720, 486);
    // 0.1428 * 720 = 102.8 and 0.2857 * 720 = 205.7; 0.66 * 486 = 320.76.
    const Pixel8 white = {128, 128, 180, 255};
    const Pixel8 yellow = {142, 44, 161, 255};
    const Pixel8 cyan = {44, 156, 131, 255};
    EXPECT_EQ(PixelAt<Pixel8>(frame, 101, 0), white);
    EXPECT_EQ(PixelAt<Pixel8>(frame, 102, 0), yellow);
    EXPECT_EQ(PixelAt<Pixel8>(frame, 102, 319), yellow);
    EXPECT_NE(PixelAt<Pixel8>(frame, 102, 320), yellow);
    EXPECT_EQ(PixelAt<Pixel8>(frame, 204, 0), yellow);
    EXPECT_EQ(PixelAt<Pixel8>(frame, 205, 0), cyan);
}

TEST(FrameRequest, PutsThePlugeAtTheBottomRight) {
    const GuardedFrame frame = Draw<Pixel8>(720, 486);
    const auto lumaAt = [&frame](std::size_t x) { return PixelAt<Pixel8>(frame, x, 485)[2]; };
    EXPECT_EQ(lumaAt(513), 16);  // 0.7144 * 720 = 514.4
    EXPECT_EQ(lumaAt(514), 7);
    EXPECT_EQ(lumaAt(549), 16);  // 0.7626 * 720 = 549.1
    EXPECT_EQ(lumaAt(582), 25);  // 0.8095 * 720 = 582.8
    EXPECT_EQ(lumaAt(719), 16);
}

TEST(FrameRequest, FloatLumaRunsFromBlackToWhiteAndKeepsBelowBlack) {
    const GuardedFrame frame = Draw<PixelFloat>(1920, 1080);
    const PixelFloat black = {0.0F, 0.0F, 0.0F, 1.0F};
    const PixelFloat white = {0.0F, 0.0F, 1.0F, 1.0F};
    EXPECT_EQ(PixelAt<PixelFloat>(frame, 445, 720), black);  // the ramp's first column
    EXPECT_EQ(PixelAt<PixelFloat>(frame, 1472, 720)[2], 1027.0F * static_cast<float>(1.0 / 1028));
    EXPECT_EQ(PixelAt<PixelFloat>(frame, 1473, 720), white);  // the white bar, over the ramp's last column
    EXPECT_EQ(PixelAt<PixelFloat>(frame, 1679, 809), white);
    EXPECT_EQ(PixelAt<PixelFloat>(frame, 1140, 1079)[2], (12.0F - 16.0F) / 219.0F);  // 0.5891 * 1920 = 1131.1
    EXPECT_EQ(PixelAt<PixelFloat>(frame, 1150, 809)[2],
              static_cast<float>(1150 - 445) * static_cast<float>(1.0 / 1028));
}

TEST(FrameRequest, ShowsTheSameColourInBothFormatsWhereTheCardsAgree) {
    const GuardedFrame eight = Draw<Pixel8>(1920, 1080);
    const GuardedFrame deep = Draw<PixelFloat>(1920, 1080);
    // The middles of yellow, cyan, green, magenta, red and blue lie in both cards' bars of that colour.
    for (const std::size_t x : {520U, 700U, 960U, 1200U, 1430U, 1660U}) {
        const Pixel8 codes = PixelAt<Pixel8>(eight, x, 100);
        EXPECT_EQ(PixelAt<PixelFloat>(deep, x, 100), test::ToFloatPixel(codes)) << "column " << x;
    }
}

TEST(FrameRequest, InAnotherFormatIsRefusedAndLeavesTheBuffer) {
    const GuardedFrame frame(64, 64, 0x37785556, 16);
    for (const std::uint32_t format : {0U, 2061U, 2829U, 0x56557837U, 0x37785557U, 0x78797577U, 0xFFFFFFFFU}) {
        EXPECT_EQ(
            test::Send(test::FrameRequest{.width = 64, .height = 64, .pixelFormat = format, .frame = frame.Handle()}),
            3)
            << "format " << format;
        EXPECT_TRUE(frame.Untouched()) << "format " << format;
    }
}

TEST(FrameRequest, OfNoSizeDrawsNothing) {
    const GuardedFrame frame(64, 64, 0x37785556, 16);
    for (const std::uint32_t format : {0x37785556U, 0x78797576U}) {
        for (const auto& [width, height] : {std::pair{0, 0}, std::pair{0, 64}, std::pair{64, 0}, std::pair{-64, -64},
                                            std::pair{-1, 64}, std::pair{64, -1}, std::pair{-32768, -32768}}) {
            EXPECT_EQ(test::Send(test::FrameRequest{.width = static_cast<std::int16_t>(width),
                                                    .height = static_cast<std::int16_t>(height),
                                                    .pixelFormat = format,
                                                    .frame = frame.Handle()}),
                      0);
            EXPECT_TRUE(frame.Untouched()) << width << " x " << height;
        }
    }
}

}  // namespace
