#pragma once

#include "Host/Services/Frames/ColourLine.h"

#include <cstddef>
#include <cstdint>

namespace zelcore {

/// Fills a rectangle of `width` pixels and `height` rows, both above 0, that lie `rowBytes` apart, from the
/// pixel at `start` on. Any address and any distance; other bytes are not touched. Any thread.
void FillRows(std::uint8_t* start, std::ptrdiff_t rowBytes, int width, int height, const ColourLine& colour);

}  // namespace zelcore
