#include "Host/Interface/Core/VectorRuntime.h"
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

// Which bytes IR_FillWithColor writes. The whole memory round a block is compared with a fill that goes
// pixel by pixel.

namespace {

using testing::Each;

constexpr std::uint8_t kUnfilled = 0xCC;
constexpr std::array<std::uint8_t, 4> kColour8 = {142, 44, 161, 255};
constexpr std::array<float, 4> kColourFloat = {0.0625F, -0.375F, 0.662F, 1.0F};

struct FillFormat {
    std::uint32_t code;
    int bytesPerPixel;
    const void* colour;
};
constexpr FillFormat kFillFormats[] = {{kFillFormat_VUYA_8u, kBytesPerPixel_VUYA_8u, kColour8.data()},
                                       {kFillFormat_VUYA_32f, kBytesPerPixel_VUYA_32f, kColourFloat.data()}};

void PlainFill(std::uint8_t* destination, int rowBytes, int width, int height, const FillFormat& format) {
    const auto bytes = static_cast<std::size_t>(format.bytesPerPixel);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::memcpy(destination + std::ptrdiff_t{y} * rowBytes + std::ptrdiff_t{x} * format.bytesPerPixel,
                        format.colour, bytes);
        }
    }
}

// Fills a block that starts `offset` bytes into its guarded memory, and expects what the plain fill leaves.
void ExpectLikePlainFill(int rowBytes, int width, int height, const FillFormat& format, std::size_t offset) {
    constexpr std::size_t kGuard = 256;
    const int span = std::abs(rowBytes) * (height - 1) + width * format.bytesPerPixel;
    std::vector<std::uint8_t> actual(offset + static_cast<std::size_t>(span) + 2 * kGuard, kUnfilled);
    std::vector<std::uint8_t> expected = actual;
    // With a negative stride the first row in the call is the last one in memory.
    const std::size_t start =
        kGuard + offset + (rowBytes < 0 ? static_cast<std::size_t>(-rowBytes * (height - 1)) : 0U);
    IR_FillWithColor(actual.data() + start, rowBytes, width, height, format.code, format.colour, format.code);
    PlainFill(expected.data() + start, rowBytes, width, height, format);
    ASSERT_TRUE(actual == expected) << width << " x " << height << " pixels, " << rowBytes << " bytes a row, from byte "
                                    << offset << ", format " << format.code;
}

// With the widest stores of each processor: the dispatch index names them.
TEST(FrameFill, WritesBlocksOfEveryWidthAtEveryAlignmentAndNothingElse) {
    ippSafeInit();
    const std::int32_t best = ippJumpIndexForMergedLibs;
    for (const std::int32_t index : {std::int32_t{kVectorNotInitialised}, kVectorLowest, best}) {
        ippJumpIndexForMergedLibs = index;
        for (const FillFormat& format : kFillFormats) {
            for (int width = 1; width <= 70; ++width) {
                for (std::size_t offset = 0; offset < 64; ++offset) {
                    ExpectLikePlainFill(width * format.bytesPerPixel + 4, width, 3, format, offset);
                }
            }
        }
    }
    EXPECT_EQ(ippJumpIndexForMergedLibs, best);
}

TEST(FrameFill, WritesLargeBlocksLikeSmallOnes) {
    for (const FillFormat& format : kFillFormats) {
        for (const auto& [width, height] : {std::pair{720, 576}, {1919, 17}, {1, 1080}, {33, 1}}) {
            ExpectLikePlainFill(width * format.bytesPerPixel, width, height, format, 0);
            ExpectLikePlainFill(width * format.bytesPerPixel + 64, width, height, format, 4);
        }
    }
}

// Rows so long belong to frames larger than any cache: their lines are streamed where every row begins alike.
TEST(FrameFill, WritesRowsOfTheLargestFramesLikeSmallOnes) {
    constexpr int kLongRow = 655'360;
    for (const FillFormat& format : kFillFormats) {
        for (const int width : {7, 8, 9, 31, 32, 33, 400, 2001}) {
            for (const std::size_t offset : {0U, 4U, 16U, 48U, 63U}) {
                ExpectLikePlainFill(kLongRow, width, 3, format, offset);
                ExpectLikePlainFill(kLongRow + 16, width, 3, format, offset);
                ExpectLikePlainFill(-kLongRow, width, 3, format, offset);
            }
        }
    }
}

// A frame's size decides which of its rows stay in the caches. The lengths are close enough together for every
// way to be met, be the largest cache of 1 MiB or of 1 GiB.
TEST(FrameFill, WritesRowsOfFramesBelowAndAboveTheCacheLikeSmallOnes) {
    constexpr int kLongestRow = 524'288;
    constexpr int kHeight = 13;  // more rows than any of the ways takes before it begins again
    for (const FillFormat& format : kFillFormats) {
        for (int rowBytes = 4096; rowBytes <= kLongestRow; rowBytes += rowBytes / 128 * 64) {
            for (const int width : {33, 403}) {
                for (const std::size_t offset : {0U, 48U}) {
                    ExpectLikePlainFill(rowBytes, width, kHeight, format, offset);
                }
            }
        }
    }
}

TEST(FrameFill, FollowsNegativeAndOddRowStrides) {
    for (const FillFormat& format : kFillFormats) {
        for (const int width : {1, 5, 40}) {
            const int tight = width * format.bytesPerPixel;
            for (const int rowBytes : {-tight, -(tight + 20), tight + 1, tight + 13, -(tight + 7)}) {
                ExpectLikePlainFill(rowBytes, width, 4, format, 0);
            }
        }
    }
}

// Rows that share memory, down to a stride of nothing: each is written in turn.
TEST(FrameFill, WritesRowsThatOverlapOneAfterTheOther) {
    for (const FillFormat& format : kFillFormats) {
        for (const int rowBytes : {0, 1, 6, 64, -3}) {
            ExpectLikePlainFill(rowBytes, 40, 4, format, 0);
        }
    }
}

TEST(FrameFill, FillsNothingForASizeOfZeroOrLess) {
    std::vector<std::uint8_t> memory(256, kUnfilled);
    for (const FillFormat& format : kFillFormats) {
        for (const auto& [width, height] :
             {std::pair{0, 2}, {2, 0}, {0, 0}, {-1, 2}, {2, -1}, {-1, -1}, {INT32_MIN, INT32_MIN}}) {
            IR_FillWithColor(memory.data() + 64, 64, width, height, format.code, format.colour, format.code);
            IR_FillWithColor(nullptr, 64, width, height, format.code, nullptr, format.code);
        }
    }
    EXPECT_THAT(memory, Each(kUnfilled));
}

TEST(FrameFill, FillsNothingForAFormatItDoesNotKnow) {
    std::vector<std::uint8_t> memory(256, kUnfilled);
    for (const std::uint32_t unknown : {0U, 1U, 2060U, 2062U, 2830U, kPixelFormat_VUYA_8u, kPixelFormat_VUYA_32f}) {
        for (const FillFormat& format : kFillFormats) {
            IR_FillWithColor(memory.data() + 64, 64, 1, 1, unknown, format.colour, format.code);
            IR_FillWithColor(memory.data() + 64, 64, 1, 1, format.code, format.colour, unknown);
        }
    }
    EXPECT_THAT(memory, Each(kUnfilled));
}

TEST(FrameFill, TakesAColourFromAnyAddress) {
    std::array<std::uint8_t, 17> bytes = {};
    std::memcpy(bytes.data() + 1, kColourFloat.data(), 16);
    std::array<float, 4> pixel = {};
    IR_FillWithColor(pixel.data(), 16, 1, 1, kFillFormat_VUYA_32f, bytes.data() + 1, kFillFormat_VUYA_32f);
    EXPECT_EQ(pixel, kColourFloat);
}

}  // namespace
