#include "Host/Lineup/Validation/Probes/GuardedFrame.h"

#include <fmt/format.h>

#include <algorithm>

namespace lineup::validation {

namespace {

constexpr std::size_t kFrameGuardBytes = 1U << 16U;  // more than a row of most sizes

std::size_t BytesPerPixel(std::uint32_t pixelFormat) {
    return pixelFormat == kPixelFormat_VUYA_32f ? kBytesPerPixel_VUYA_32f : kBytesPerPixel_VUYA_8u;
}

}  // namespace

std::string Text(const FrameShape& shape) {
    std::string format;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const auto character = static_cast<char>((shape.pixelFormat >> shift) & 0xFFU);
        format += character >= ' ' && character <= '~' ? character : '?';
    }
    return fmt::format("the frame of {}x{}, {}", shape.width, shape.height, format);
}

GuardedFrame::GuardedFrame(const FrameShape& shape)
    : mShape(shape),
      mBuffer(shape.width + shape.extraColumns, shape.height, shape.pixelFormat),
      mRowBytes(static_cast<std::size_t>(mBuffer.RowBytes())),
      mPictureRowBytes(static_cast<std::size_t>(shape.width) * BytesPerPixel(shape.pixelFormat)),
      mMemory(2 * kFrameGuardBytes + mRowBytes * static_cast<std::size_t>(shape.height), shape.filler) {
    mBuffer.Handle()->pixels = mMemory.data() + kFrameGuardBytes;
}

std::span<const std::uint8_t> GuardedFrame::Row(int row) const {
    return std::span(mMemory).subspan(kFrameGuardBytes + static_cast<std::size_t>(row) * mRowBytes, mPictureRowBytes);
}

bool GuardedFrame::HoldsFiller(std::size_t begin, std::size_t end) const {
    const auto bytes = std::span(mMemory).subspan(begin, end - begin);
    return std::ranges::all_of(bytes, [this](std::uint8_t byte) { return byte == mShape.filler; });
}

std::string GuardedFrame::WrittenOutside() const {
    if (mBuffer.Handle()->pixels != mMemory.data() + kFrameGuardBytes) {
        return "where the frame's pixels are was changed";
    }
    if (!HoldsFiller(0, kFrameGuardBytes)) {
        return "was drawn outside of its picture: before its first row";
    }
    if (!HoldsFiller(mMemory.size() - kFrameGuardBytes, mMemory.size())) {
        return "was drawn outside of its picture: after its last row";
    }
    for (int row = 0; row < mShape.height; ++row) {
        const std::size_t begin = kFrameGuardBytes + static_cast<std::size_t>(row) * mRowBytes;
        if (!HoldsFiller(begin + mPictureRowBytes, begin + mRowBytes)) {
            return "was drawn outside of its picture: between its rows";
        }
    }
    return {};
}

bool GuardedFrame::IsUntouched() const {
    return HoldsFiller(0, mMemory.size());
}

}  // namespace lineup::validation
