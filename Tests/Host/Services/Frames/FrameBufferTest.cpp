#include <lineup/services/FrameBuffer.h>
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;
using zelcore::FrameBuffer;

constexpr std::uint32_t kFormats[] = {kPixelFormat_VUYA_8u, kPixelFormat_VUYA_32f};

TEST(FrameBuffer, RemembersWhatItWasMadeFor) {
    const FrameBuffer frame(720, 576, kPixelFormat_VUYA_8u);
    EXPECT_EQ(frame.Width(), 720);
    EXPECT_EQ(frame.Height(), 576);
    EXPECT_EQ(frame.PixelFormat(), kPixelFormat_VUYA_8u);
}

// 5 pixels are 20 or 80 bytes: one line of 64 bytes, or three in place of two.
TEST(FrameBuffer, RoundsItsRowsUpToAnOddNumberOfCacheLines) {
    EXPECT_EQ(FrameBuffer(5, 1, kPixelFormat_VUYA_8u).RowBytes(), 64);
    EXPECT_EQ(FrameBuffer(5, 1, kPixelFormat_VUYA_32f).RowBytes(), 192);
    EXPECT_EQ(FrameBuffer(16, 1, kPixelFormat_VUYA_8u).RowBytes(), 64);
    EXPECT_EQ(FrameBuffer(17, 1, kPixelFormat_VUYA_8u).RowBytes(), 192);
    EXPECT_EQ(FrameBuffer(1920, 1, kPixelFormat_VUYA_32f).RowBytes(), 30'784);
}

TEST(FrameBuffer, StartsEveryRowOnACacheLine) {
    for (const std::uint32_t format : kFormats) {
        for (const int width : {1, 3, 16, 719}) {
            const FrameBuffer frame(width, 3, format);
            for (int line = 0; line < 3; ++line) {
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frame.Line(line)) % 64, 0U);
            }
        }
    }
}

TEST(FrameBuffer, StoresTheBottomLineFirst) {
    const FrameBuffer frame(4, 3, kPixelFormat_VUYA_8u);
    const std::uint8_t* const pixels = frame.Handle()->pixels;
    EXPECT_EQ(frame.Line(2), pixels);
    EXPECT_EQ(frame.Line(1), pixels + frame.RowBytes());
    EXPECT_EQ(frame.Line(0), pixels + 2 * frame.RowBytes());
}

TEST(FrameBuffer, HandsOutItsPixelPointerAtByte16OfItsHandle) {
    const FrameBuffer frame(4, 3, kPixelFormat_VUYA_8u);
    std::uint8_t* pointer = nullptr;
    std::memcpy(&pointer, reinterpret_cast<const std::uint8_t*>(frame.Handle()) + 16, sizeof pointer);
    EXPECT_EQ(pointer, frame.Line(2));
}

TEST(FrameBuffer, TellsItsRowBytesThroughItsHandle) {
    for (const std::uint32_t format : kFormats) {
        const FrameBuffer frame(100, 2, format);
        EXPECT_EQ(vexelGetRowbytes(frame.Handle()), frame.RowBytes());
    }
}

TEST(FrameBuffer, HasRoomForEveryPixel) {
    for (const std::uint32_t format : kFormats) {
        const FrameBuffer frame(33, 7, format);
        std::memset(frame.Handle()->pixels, 0x5A, static_cast<std::size_t>(frame.RowBytes()) * 7);  // under asan
        EXPECT_EQ(frame.Line(0)[frame.RowBytes() - 1], 0x5A);
    }
}

TEST(FrameBuffer, KeepsItsHandleAndPixelsAcrossAMove) {
    FrameBuffer first(4, 3, kPixelFormat_VUYA_8u);
    vexelFrame* const handle = first.Handle();
    std::uint8_t* const pixels = handle->pixels;
    FrameBuffer second = std::move(first);
    EXPECT_EQ(second.Handle(), handle);
    EXPECT_EQ(second.Handle()->pixels, pixels);
    FrameBuffer third(1, 1, kPixelFormat_VUYA_32f);
    third = std::move(second);
    EXPECT_EQ(third.Handle(), handle);
    EXPECT_EQ(third.Width(), 4);
}

TEST(FrameBuffer, TakesTheLargestWidthAndHeightThatARequestNames) {
    EXPECT_EQ(FrameBuffer(32'767, 1, kPixelFormat_VUYA_32f).RowBytes(), 524'352);  // 8193 lines
    EXPECT_EQ(FrameBuffer(1, 32'767, kPixelFormat_VUYA_8u).Height(), 32'767);
}

TEST(FrameBuffer, RefusesSizesThatNoRequestNames) {
    for (const int size : {0, -1, 32'768, INT32_MIN, INT32_MAX}) {
        EXPECT_THAT([size] { FrameBuffer(size, 1, kPixelFormat_VUYA_8u); },
                    ThrowsMessage<std::invalid_argument>(HasSubstr("width")));
        EXPECT_THAT([size] { FrameBuffer(1, size, kPixelFormat_VUYA_8u); },
                    ThrowsMessage<std::invalid_argument>(HasSubstr("height")));
    }
}

TEST(FrameBuffer, RefusesOtherPixelFormats) {
    for (const std::uint32_t format : {0U, kFillFormat_VUYA_8u, kFillFormat_VUYA_32f, 0xFFFFFFFFU}) {
        EXPECT_THAT([format] { FrameBuffer(1, 1, format); },
                    ThrowsMessage<std::invalid_argument>(HasSubstr(std::to_string(format))));
    }
}

}  // namespace
