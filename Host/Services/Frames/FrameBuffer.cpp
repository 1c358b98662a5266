#include <lineup/services/FrameBuffer.h>
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Services/Frames/FrameMemory.h"

#include <limits>
#include <stdexcept>
#include <string>

namespace zelcore {

namespace {

constexpr int kRowStepBytes = 64;  // of a cache; rows begin on one

int BytesPerPixel(std::uint32_t pixelFormat) {
    switch (pixelFormat) {
        case kPixelFormat_VUYA_32f:
            return kBytesPerPixel_VUYA_32f;
        case kPixelFormat_VUYA_8u:
            return kBytesPerPixel_VUYA_8u;
        default:
            throw std::invalid_argument("a frame buffer holds 8-bit or float V,U,Y,A, not pixel format " +
                                        std::to_string(pixelFormat));
    }
}

// Rows are an odd number of cache lines apart. With an even number, the pixels of a column, which the ramp is
// drawn by, would share a few of the inner cache's places.
int RowBytesFor(int pixelBytes) {
    const int lines = (pixelBytes + kRowStepBytes - 1) / kRowStepBytes;
    return (lines | 1) * kRowStepBytes;
}

void CheckSide(const char* name, int pixels) {
    constexpr int kLargest = std::numeric_limits<std::int16_t>::max();
    if (pixels < 1 || pixels > kLargest) {
        throw std::invalid_argument(std::string("a frame's ") + name + " is 1 to " + std::to_string(kLargest) +
                                    " pixels, not " + std::to_string(pixels));
    }
}

// A handle points at the public part of one of these.
struct HostFrame : vexelFrame {
    int rowBytes = 0;
};

}  // namespace

struct FrameBuffer::Frame : HostFrame {
    int width = 0;
    int height = 0;
    std::uint32_t pixelFormat = 0;
    FrameMemory memory;
};

FrameBuffer::FrameBuffer(int width, int height, std::uint32_t pixelFormat) {
    CheckSide("width", width);
    CheckSide("height", height);
    const int rowBytes = RowBytesFor(width * BytesPerPixel(pixelFormat));
    const std::size_t bytes = static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(height);
    mFrame = std::make_unique<Frame>();
    mFrame->width = width;
    mFrame->height = height;
    mFrame->pixelFormat = pixelFormat;
    mFrame->rowBytes = rowBytes;
    mFrame->memory = AllocateFrameMemory(bytes);
    mFrame->pixels = reinterpret_cast<std::uint8_t*>(mFrame->memory.get());
}

FrameBuffer::~FrameBuffer() = default;
FrameBuffer::FrameBuffer(FrameBuffer&&) noexcept = default;
FrameBuffer& FrameBuffer::operator=(FrameBuffer&&) noexcept = default;

int FrameBuffer::Width() const noexcept {
    return mFrame->width;
}
int FrameBuffer::Height() const noexcept {
    return mFrame->height;
}
std::uint32_t FrameBuffer::PixelFormat() const noexcept {
    return mFrame->pixelFormat;
}
int FrameBuffer::RowBytes() const noexcept {
    return mFrame->rowBytes;
}
vexelFrame* FrameBuffer::Handle() const noexcept {
    return mFrame.get();
}

const std::uint8_t* FrameBuffer::Line(int line) const noexcept {
    const std::ptrdiff_t memoryRow = mFrame->height - 1 - line;
    return mFrame->pixels + memoryRow * mFrame->rowBytes;
}

}  // namespace zelcore

int vexelGetRowbytes(vexel frame) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-static-cast-downcast): only FrameBuffer makes handles
    return static_cast<const zelcore::HostFrame*>(frame)->rowBytes;
}
