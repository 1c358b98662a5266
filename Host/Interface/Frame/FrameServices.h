#pragma once

#include <cstddef>
#include <cstdint>

#include "../Core/Export.h"

/// Frame memory and how it is painted. Both services have C linkage and are reached through the
/// dynamic symbol table, so a program can put its own in front.

namespace zelcore {

/// A frame buffer of the host. Rows are stored bottom-up: the first row in memory is the bottom line
/// of the picture. Only the pixel pointer is public; it lies at byte 16.
struct vexelFrame {
    void* hostData0;
    void* hostData8;
    std::uint8_t* pixels;
};
static_assert(offsetof(vexelFrame, pixels) == 16);

}  // namespace zelcore

using zelcore::vexelFrame;

/// A handle to a frame buffer; the host owns what it points at.
using vexel = vexelFrame*;

extern "C" {

/// The distance in bytes from one row of `frame` to the next one in memory (one line further up the
/// picture). Any thread.
ZEL_API int vexelGetRowbytes(vexel frame);

/// Fills a block of width x height pixels with one colour, converting it from `colourFormat` to
/// `destinationFormat` (kFillFormat_...): luma (Y - 16) / 219, chroma (C - 128) / 224, alpha A / 255,
/// nothing clipped on the way to float; rounded and clipped to 0..255 on the way to 8 bits.
/// `destination` is the block's first pixel in memory, which is its bottom left one; each further row
/// lies `rowBytes` later. A width or height of zero or less, or a format other than the two, fills
/// nothing. Nothing outside the block is written. Any thread.
ZEL_API void IR_FillWithColor(void* destination, int rowBytes, int width, int height, std::uint32_t destinationFormat,
                              const void* colour, std::uint32_t colourFormat);
}
