#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// One rectangle of the card. Edges are fractions of the picture; right and bottom are exclusive.
struct BarRect {
    double x0;                           ///< left edge
    double y0;                           ///< top edge, 0 at the top of the picture
    double x1;                           ///< right edge
    double y1;                           ///< bottom edge; 0 ends a table
    std::array<std::uint8_t, 4> colour;  ///< V, U, Y, A: BT.601 Y'CbCr, 8-bit legal range
    std::uint32_t pad;
};
static_assert(sizeof(BarRect) == 40);
static_assert(offsetof(BarRect, colour) == 32);

/// The colour of a rectangle that is a luma ramp from black at its left edge to white at its right.
inline constexpr std::array<std::uint8_t, 4> kRampColour = {0xFF, 0xFF, 0xFF, 0xFF};

inline constexpr std::size_t kBarTableRows = 44;
using BarTable = std::array<BarRect, kBarTableRows>;

/// The cards, drawn in row order. The edges are the decimal figures of the design, not exact sevenths.
extern const BarTable NTSCYuvTable;  ///< standard definition, for 8-bit frames
extern const BarTable HDYuvTable;    ///< high definition with a luma ramp, for float frames
