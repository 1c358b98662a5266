#pragma once

#include "Host/Services/Frames/ColourLine.h"

#include <cstddef>
#include <cstdint>

namespace zelcore {

/// Writes a row of `bytes` bytes, two cache lines at least and whole pixels, from `out` on. `ahead` bytes further on,
/// its lines are fetched: the processor's own look-ahead ends with the page, and a rectangle's row ends before that.
/// That address may lie past the frame.
using WriteRow = void (*)(std::uint8_t* out, std::ptrdiff_t bytes, std::ptrdiff_t ahead, const ColourLine& colour);

/// Which cache a line is fetched into.
enum class Nearness : std::uint8_t { Outer = 1, Innermost = 3 };

/// Has the line fetched that lies `distance` bytes beyond `line`, be it in the frame or not: fetching faults nowhere.
/// (For writing, the processor would ask the other cores for the line; that is slower for frames larger than the
/// caches.)
template <Nearness kInto>
inline void FetchAhead(const std::uint8_t* line, std::ptrdiff_t distance) {
    constexpr int kForReading = 0;
    const auto address = reinterpret_cast<std::uintptr_t>(line) + static_cast<std::uintptr_t>(distance);
    __builtin_prefetch(reinterpret_cast<const void*>(address), kForReading, static_cast<int>(kInto));
}

/// The writers of this processor, or rather of the dispatch index. A kept row is written through the caches, a
/// streamed one past them: a line that is written whole need not be read from memory first.
WriteRow KeepRow(Nearness fetchInto);
WriteRow StreamRow();

/// What was streamed is seen by other threads after this.
void EndStreaming();

/// The bytes before the first cache line's boundary, 0 where no pixel ends on it.
inline std::ptrdiff_t HeadBytes(const std::uint8_t* out, const ColourLine& colour) {
    const auto beyond = static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(out) % ColourLine::kBytes);
    const bool pixelEnds = (beyond & (colour.PixelBytes() - 1)) == 0;
    return pixelEnds ? (ColourLine::kBytes - beyond) % ColourLine::kBytes : 0;
}

}  // namespace zelcore
