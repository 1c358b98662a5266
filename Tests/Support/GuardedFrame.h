#pragma once

#include <lineup/services/FrameBuffer.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace test {

/// A frame of the host whose pixels lie in guarded memory: unwritten bytes hold kFiller, before, after
/// and between the rows.
class GuardedFrame {
public:
    GuardedFrame(int width, int height, std::uint32_t pixelFormat, std::size_t bytesPerPixel)
        : mBuffer(width, height, pixelFormat),
          mRowPixelBytes(static_cast<std::size_t>(width) * bytesPerPixel),
          mRowBytes(static_cast<std::size_t>(mBuffer.RowBytes())),
          mHeight(static_cast<std::size_t>(height)),
          mMemory(2 * kGuard + mRowBytes * mHeight, kFiller) {
        mBuffer.Handle()->pixels = mMemory.data() + kGuard;
    }

    [[nodiscard]] vexel Handle() const { return mBuffer.Handle(); }

    /// The bytes of picture line `line`, 0 at the top, without its padding.
    [[nodiscard]] std::span<const std::uint8_t> Line(std::size_t line) const {
        return {mMemory.data() + kGuard + (mHeight - 1 - line) * mRowBytes, mRowPixelBytes};
    }

    /// No byte outside the picture was written.
    [[nodiscard]] bool GuardsIntact() const {
        const auto intact = [this](std::size_t first, std::size_t count) {
            const auto begin = mMemory.begin() + static_cast<std::ptrdiff_t>(first);
            return std::all_of(begin, begin + static_cast<std::ptrdiff_t>(count),
                               [](std::uint8_t byte) { return byte == kFiller; });
        };
        bool paddingIntact = true;
        for (std::size_t row = 0; row < mHeight; ++row) {
            paddingIntact =
                paddingIntact && intact(kGuard + row * mRowBytes + mRowPixelBytes, mRowBytes - mRowPixelBytes);
        }
        return paddingIntact && intact(0, kGuard) && intact(mMemory.size() - kGuard, kGuard);
    }

    /// No byte at all was written.
    [[nodiscard]] bool Untouched() const {
        return std::all_of(mMemory.begin(), mMemory.end(), [](std::uint8_t byte) { return byte == kFiller; });
    }

private:
    static constexpr std::uint8_t kFiller = 0xCC;
    static constexpr std::size_t kGuard = 1U << 16U;

    zelcore::FrameBuffer mBuffer;
    std::size_t mRowPixelBytes;
    std::size_t mRowBytes;
    std::size_t mHeight;
    std::vector<std::uint8_t> mMemory;
};

}  // namespace test
