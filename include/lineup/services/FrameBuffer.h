#pragma once

#include <lineup/interface/Core/Export.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zelcore {

struct vexelFrame;

/// The host's frame memory: rows stored bottom-up, each starting on a 64-byte boundary, contents
/// undefined until drawn. Movable; the handle stays valid across a move.
class ZEL_API FrameBuffer {
public:
    /// Room for width x height pixels of `pixelFormat` (kPixelFormat_...). Throws
    /// std::invalid_argument for a size of zero or less, one past 32767 (what a frame request can
    /// name), or another format.
    FrameBuffer(int width, int height, std::uint32_t pixelFormat);
    ~FrameBuffer();
    FrameBuffer(FrameBuffer&&) noexcept;
    FrameBuffer& operator=(FrameBuffer&&) noexcept;
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    [[nodiscard]] int Width() const noexcept;
    [[nodiscard]] int Height() const noexcept;
    [[nodiscard]] std::uint32_t PixelFormat() const noexcept;
    [[nodiscard]] int RowBytes() const noexcept;

    /// What a frame request carries: a `vexel` of <lineup/interface/Frame/FrameServices.h>.
    [[nodiscard]] vexelFrame* Handle() const noexcept;

    /// The first pixel of picture line `line`, 0 at the top.
    [[nodiscard]] const std::uint8_t* Line(int line) const noexcept;

private:
    struct Frame;
    std::unique_ptr<Frame> mFrame;
};

}  // namespace zelcore
