#pragma once

#include <lineup/services/FrameBuffer.h>
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lineup::validation {

/// A frame to be drawn.
struct FrameShape {
    int width = 0;
    int height = 0;
    std::uint32_t pixelFormat = kPixelFormat_VUYA_32f;
    int extraColumns = 0;  ///< by which each row in memory is longer than the picture is wide
    std::uint8_t filler = 0xCC;
};

/// The shape as a failure names it: "the frame of 64x36, VUx7".
[[nodiscard]] std::string Text(const FrameShape& shape);

/// A frame whose pixels lie in guarded memory: bytes that were not drawn hold the filler, before,
/// after and between the rows.
class GuardedFrame {
public:
    explicit GuardedFrame(const FrameShape& shape);

    [[nodiscard]] const FrameShape& Shape() const noexcept { return mShape; }

    /// What a frame request carries.
    [[nodiscard]] vexel Handle() const noexcept { return mBuffer.Handle(); }

    /// The pixels of row `row` in memory, the lowest line first, without what lies between the rows.
    [[nodiscard]] std::span<const std::uint8_t> Row(int row) const;

    /// Where something outside of the picture was drawn on, in words; empty when nothing was.
    [[nodiscard]] std::string WrittenOutside() const;

    /// No byte at all was written.
    [[nodiscard]] bool IsUntouched() const;

private:
    [[nodiscard]] bool HoldsFiller(std::size_t begin, std::size_t end) const;

    FrameShape mShape;
    zelcore::FrameBuffer mBuffer;
    std::size_t mRowBytes;
    std::size_t mPictureRowBytes;
    std::vector<std::uint8_t> mMemory;
};

}  // namespace lineup::validation
