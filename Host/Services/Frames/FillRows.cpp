#include "Host/Services/Frames/FillRows.h"

#include "Host/Services/Frames/CacheSize.h"
#include "Host/Services/Frames/RowWriters.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zelcore {

namespace {

struct Block {
    std::uint8_t* start;
    std::ptrdiff_t rowBytes;
    std::ptrdiff_t bytes;  // of a row within the block
    int height;

    [[nodiscard]] std::uint8_t* Row(int y) const { return start + rowBytes * y; }
};

// How many of a frame's rows are written through the caches, to be found there by whoever reads the frame or
// draws over it. The others are streamed to memory, which goes on while the caches take their rows.
enum class Kept : std::uint8_t { All, OneOfThree, None };

// What a frame keeps in the largest cache takes half of that at most. Of the frame that a block lies in only the
// length of its rows is known: it is taken to be as high as a 16:9 picture, or as the block.
Kept RowsKept(const Block& block, const ColourLine& colour) {
    static const std::ptrdiff_t most = SharedCacheBytes() / 2;
    const std::ptrdiff_t rows = std::max<std::ptrdiff_t>(block.height, block.rowBytes / colour.PixelBytes() * 9 / 16);
    if (block.rowBytes <= most / rows) {
        return Kept::All;
    }
    return block.rowBytes <= 3 * most / rows ? Kept::OneOfThree : Kept::None;
}

// Only whole lines are streamed: every row has to reach a line's boundary.
bool ReachesBoundaries(const Block& block, const ColourLine& colour) {
    const auto firstLine = reinterpret_cast<std::uintptr_t>(block.start + HeadBytes(block.start, colour));
    return firstLine % ColourLine::kBytes == 0 && block.rowBytes % ColourLine::kBytes == 0;
}

void FillAlike(const Block& block, const ColourLine& colour, WriteRow writeRow) {
    for (int y = 0; y < block.height; ++y) {
        writeRow(block.Row(y), block.bytes, block.rowBytes, colour);
    }
}

// Four rows are streamed, two are kept, and so on; a kept row fetches the one that is kept six rows further.
void FillMixed(const Block& block, const ColourLine& colour) {
    constexpr int kStreamed = 4;
    constexpr int kPeriod = 6;
    const WriteRow stream = StreamRow();
    const WriteRow keep = KeepRow(Nearness::Outer);
    for (int y = 0; y < block.height; ++y) {
        if (y % kPeriod < kStreamed) {
            stream(block.Row(y), block.bytes, block.rowBytes, colour);
        } else {
            keep(block.Row(y), block.bytes, block.rowBytes * kPeriod, colour);
        }
    }
}

void FillWide(const Block& block, const ColourLine& colour) {
    switch (ReachesBoundaries(block, colour) ? RowsKept(block, colour) : Kept::All) {
        case Kept::All:
            FillAlike(block, colour, KeepRow(Nearness::Innermost));
            return;
        case Kept::OneOfThree:
            FillMixed(block, colour);
            break;
        case Kept::None:
            FillAlike(block, colour, StreamRow());
            break;
    }
    EndStreaming();
}

// The columns of the ramp are a pixel wide: a loop with the pixel in a register.
template <std::size_t kPixelBytes>
void FillNarrow(const Block& block, const ColourLine& colour) {
    std::array<std::uint8_t, kPixelBytes> pixel{};
    std::memcpy(pixel.data(), colour.Bytes(), kPixelBytes);
    for (int y = 0; y < block.height; ++y) {
        std::uint8_t* out = block.Row(y);
        FetchAhead<Nearness::Innermost>(out, 4 * ColourLine::kBytes);  // the columns to come
        for (const std::uint8_t* const end = out + block.bytes; out < end; out += kPixelBytes) {
            std::memcpy(out, pixel.data(), kPixelBytes);
        }
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): the block is written from there on
void FillRows(std::uint8_t* start, std::ptrdiff_t rowBytes, int width, int height, const ColourLine& colour) {
    const Block block = {.start = start, .rowBytes = rowBytes, .bytes = width * colour.PixelBytes(), .height = height};
    if (block.bytes >= 2 * ColourLine::kBytes) {
        FillWide(block, colour);
    } else if (colour.PixelBytes() == 4) {
        FillNarrow<4>(block, colour);
    } else {
        FillNarrow<16>(block, colour);
    }
}

}  // namespace zelcore
