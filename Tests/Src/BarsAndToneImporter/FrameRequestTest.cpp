// Whole frames, drawn with the host's own services.
#include "Tests/Src/BarsAndToneImporter/ExpectedPicture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace {

using test::DrawFrame;
using test::DrawsTheCards;
using test::GuardedFrame;
using test::Pixel8;
using test::PixelFloat;
using test::SendFrame;

TEST(FrameRequest, ShowsTheCardAtTheUsualSizes) {
    for (const auto& [width, height] : {std::pair{720, 486}, {720, 576}, {1280, 720}, {1920, 1080}}) {
        EXPECT_TRUE(DrawsTheCards(width, height));
    }
}

TEST(FrameRequest, CoversEveryPixelAtEverySmallSizeAndNoByteBesides) {
    for (int width = 1; width <= 48; ++width) {
        for (const int height : {1, 2, 3, 4, 7, 12, 33}) {
            EXPECT_TRUE(DrawsTheCards(width, height));
        }
    }
}

TEST(FrameRequest, CoversVeryWideAndVeryTallFrames) {
    EXPECT_TRUE(DrawsTheCards(32767, 3));
    EXPECT_TRUE(DrawsTheCards(3, 32767));
}

// FNV-1a, 64 bits, over the picture's bytes from its top line down.
std::uint64_t Hash(const GuardedFrame& frame, int height) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (int row = height - 1; row >= 0; --row) {
        for (const std::uint8_t byte : frame.Row(row)) {
            hash = (hash ^ byte) * 0x100000001B3;
        }
    }
    return hash;
}

TEST(FrameRequest, DrawsTheSameBytesEveryTime) {
    EXPECT_EQ(Hash(DrawFrame<Pixel8>(720, 486), 486), 0xF2BCC3471C1DFDA5U);
    EXPECT_EQ(Hash(DrawFrame<Pixel8>(720, 576), 576), 0x37B335D2022931A5U);
    EXPECT_EQ(Hash(DrawFrame<Pixel8>(1920, 1080), 1080), 0x1002689E1EF8C3E5U);
    EXPECT_EQ(Hash(DrawFrame<PixelFloat>(1280, 720), 720), 0x9BF94657EC4062A2U);
    const GuardedFrame frame = DrawFrame<PixelFloat>(1920, 1080);
    EXPECT_EQ(Hash(frame, 1080), 0xA00A676FDE10CA55U);
    EXPECT_EQ(SendFrame(frame, 1920, 1080, test::kFormatOf<PixelFloat>), 0);  // over what the buffer holds
    EXPECT_EQ(Hash(frame, 1080), 0xA00A676FDE10CA55U);
}

TEST(FrameRequest, InAnotherFormatIsRefusedAndLeavesTheBuffer) {
    const GuardedFrame frame({.width = 64, .height = 64});
    for (const std::uint32_t format : {0U, 2061U, 2829U, 0x56557837U, 0x37785557U, 0x78797577U, 0xFFFFFFFFU}) {
        EXPECT_EQ(SendFrame(frame, 64, 64, format), 3) << "format " << format;
        EXPECT_TRUE(frame.IsUntouched()) << "format " << format;
    }
}

TEST(FrameRequest, OfNoSizeDrawsNothing) {
    const GuardedFrame frame({.width = 64, .height = 64});
    for (const std::uint32_t format : {0x37785556U, 0x78797576U}) {
        for (const auto& [width, height] :
             {std::pair{0, 0}, {0, 64}, {64, 0}, {-64, -64}, {-1, 64}, {64, -1}, {-32768, -32768}}) {
            EXPECT_EQ(SendFrame(frame, width, height, format), 0);
            EXPECT_TRUE(frame.IsUntouched()) << width << " x " << height;
        }
    }
}

}  // namespace
