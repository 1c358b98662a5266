#include "Host/Services/FillRows.h"

#include "Host/Interface/Core/VectorRuntime.h"
#include "Host/Services/CacheSize.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace zelcore {

namespace {

/// Writes `lines` whole lines from `out` on and returns their end. `nextRow` bytes further on, the lines are
/// fetched: the processor's own look-ahead ends with the page, and a row ends before that.
using WriteLines = std::uint8_t* (*)(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t nextRow,
                                     const ColourLine& colour);

constexpr std::ptrdiff_t kLineBytes = ColourLine::kBytes;

// Which cache a line is fetched into.
enum class Nearness : std::uint8_t { kOuter = 1, kInnermost = 3 };

// The address may lie past the frame: fetching faults nowhere. (For writing, the processor would ask the
// other cores for the line; that is slower for frames larger than the caches.)
template <Nearness kNearness = Nearness::kInnermost>
void FetchAhead(const std::uint8_t* line, std::ptrdiff_t distance) {
    constexpr int kForReading = 0;
    const auto address = reinterpret_cast<std::uintptr_t>(line) + static_cast<std::uintptr_t>(distance);
    __builtin_prefetch(reinterpret_cast<const void*>(address), kForReading, static_cast<int>(kNearness));
}

std::uint8_t* WriteLinesPlain(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t nextRow,
                              const ColourLine& colour) {
    for (std::ptrdiff_t i = 0; i < lines; ++i, out += kLineBytes) {
        FetchAhead(out, nextRow);
        std::memcpy(out, colour.Bytes(), kLineBytes);
    }
    return out;
}

#if defined(__x86_64__)

template <Nearness kNearness>
[[gnu::target("avx")]] std::uint8_t* WriteLinesAvx(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t nextRow,
                                                   const ColourLine& colour) {
    const __m256 half = _mm256_load_ps(reinterpret_cast<const float*>(colour.Bytes()));
    for (std::ptrdiff_t i = 0; i < lines; ++i, out += kLineBytes) {
        FetchAhead<kNearness>(out, nextRow);
        _mm256_storeu_ps(reinterpret_cast<float*>(out), half);
        _mm256_storeu_ps(reinterpret_cast<float*>(out + kLineBytes / 2), half);
    }
    return out;
}

// Past the caches: a line that is written whole need not be read from memory first. `out` begins a line.
[[gnu::target("avx")]] std::uint8_t* StreamLinesAvx(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t nextRow,
                                                    const ColourLine& colour) {
    const __m256 half = _mm256_load_ps(reinterpret_cast<const float*>(colour.Bytes()));
    for (std::ptrdiff_t i = 0; i < lines; ++i, out += kLineBytes) {
        _mm256_stream_ps(reinterpret_cast<float*>(out), half);
        _mm256_stream_ps(reinterpret_cast<float*>(out + kLineBytes / 2), half);
    }
    FetchAhead(out, nextRow);  // a line that two rectangles share
    return out;
}

bool HasAvx() {
    if (ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) == kVectorNotInitialised) {
        ippSafeInit();
    }
    return ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) >= kVector_e9;
}

template <Nearness kNearness>
WriteLines CachedStores() {
    return HasAvx() ? WriteLinesAvx<kNearness> : WriteLinesPlain;
}

WriteLines StreamingStores() {
    return HasAvx() ? StreamLinesAvx : WriteLinesPlain;
}

// What was streamed is seen by other threads after this.
void EndStreaming() {
    _mm_sfence();
}

#else

template <Nearness>
WriteLines CachedStores() {
    return WriteLinesPlain;
}

WriteLines StreamingStores() {
    return WriteLinesPlain;
}

void EndStreaming() {}

#endif

// How many of a frame's rows are written through the caches, to be found there by whoever reads the frame or
// draws over it. The others are streamed to memory, which goes on while the caches take their rows.
enum class Kept : std::uint8_t { kAll, kOneOfThree, kNone };

// What a frame keeps in the largest cache takes half of that at most. Of the frame that a rectangle lies in only
// the length of its rows is known: it is taken to be as high as a 16:9 picture, or as the rectangle.
Kept RowsKept(std::ptrdiff_t rowBytes, std::ptrdiff_t pixelBytes, int height) {
    static const std::ptrdiff_t most = SharedCacheBytes() / 2;
    const std::ptrdiff_t rows = std::max<std::ptrdiff_t>(height, rowBytes / pixelBytes * 9 / 16);
    if (rowBytes <= most / rows) {
        return Kept::kAll;
    }
    return rowBytes <= 3 * most / rows ? Kept::kOneOfThree : Kept::kNone;
}

bool BeginsLine(const std::uint8_t* out) {
    return reinterpret_cast<std::uintptr_t>(out) % kLineBytes == 0;
}

std::uint8_t* WritePixels(std::uint8_t* out, std::ptrdiff_t bytes, const ColourLine& colour) {
    for (const std::uint8_t* const end = out + bytes; out < end; out += colour.PixelBytes()) {
        std::memcpy(out, colour.Bytes(), static_cast<std::size_t>(colour.PixelBytes()));
    }
    return out;
}

// The bytes before the first line's boundary, 0 where no pixel ends on it.
std::ptrdiff_t HeadBytes(const std::uint8_t* out, const ColourLine& colour) {
    const auto beyond = static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(out) % kLineBytes);
    return beyond % colour.PixelBytes() == 0 ? (kLineBytes - beyond) % kLineBytes : 0;
}

void FillRow(std::uint8_t* out, std::ptrdiff_t bytes, std::ptrdiff_t rowBytes, const ColourLine& colour,
             WriteLines writeLines) {
    const std::ptrdiff_t head = HeadBytes(out, colour);
    const std::ptrdiff_t rest = bytes - head;
    out = WritePixels(out, head, colour);
    out = writeLines(out, rest / kLineBytes, rowBytes, colour);
    WritePixels(out, rest % kLineBytes, colour);
}

struct Block {
    std::uint8_t* start;
    std::ptrdiff_t rowBytes;
    std::ptrdiff_t bytes;  // of a row within the block
    int height;
};

void FillRowsAlike(const Block& block, const ColourLine& colour, WriteLines writeLines) {
    for (int y = 0; y < block.height; ++y) {
        FillRow(block.start + block.rowBytes * y, block.bytes, block.rowBytes, colour, writeLines);
    }
}

// Four rows are streamed, two are kept, and so on; a kept row fetches the one that is kept six rows further.
void FillRowsMixed(const Block& block, const ColourLine& colour) {
    constexpr int kStreamed = 4;
    constexpr int kPeriod = 6;
    const WriteLines stream = StreamingStores();
    const WriteLines keep = CachedStores<Nearness::kOuter>();
    for (int y = 0; y < block.height; ++y) {
        std::uint8_t* const out = block.start + block.rowBytes * y;
        if (y % kPeriod < kStreamed) {
            FillRow(out, block.bytes, block.rowBytes, colour, stream);
        } else {
            FillRow(out, block.bytes, block.rowBytes * kPeriod, colour, keep);
        }
    }
}

void FillWideRows(const Block& block, const ColourLine& colour) {
    // Every row reaches a line's boundary, or none does; only a whole line is streamed.
    const bool onBoundaries =
        BeginsLine(block.start + HeadBytes(block.start, colour)) && block.rowBytes % kLineBytes == 0;
    switch (onBoundaries ? RowsKept(block.rowBytes, colour.PixelBytes(), block.height) : Kept::kAll) {
        case Kept::kAll:
            FillRowsAlike(block, colour, CachedStores<Nearness::kInnermost>());
            return;
        case Kept::kOneOfThree:
            FillRowsMixed(block, colour);
            break;
        case Kept::kNone:
            FillRowsAlike(block, colour, StreamingStores());
            break;
    }
    EndStreaming();
}

// The columns of the ramp are a pixel wide: a loop with the pixel in a register.
template <std::size_t kPixelBytes>
void FillColumns(std::uint8_t* start, std::ptrdiff_t rowBytes, int width, int height, const std::uint8_t* pixel) {
    std::array<std::uint8_t, kPixelBytes> colour{};
    std::memcpy(colour.data(), pixel, kPixelBytes);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* out = start + rowBytes * y;
        FetchAhead(out, 4 * kLineBytes);  // the columns to come
        for (int x = 0; x < width; ++x, out += kPixelBytes) {
            std::memcpy(out, colour.data(), kPixelBytes);
        }
    }
}

}  // namespace

void FillRows(std::uint8_t* start, std::ptrdiff_t rowBytes, int width, int height, const ColourLine& colour) {
    const std::ptrdiff_t bytes = std::ptrdiff_t{width} * colour.PixelBytes();
    if (bytes < 2 * kLineBytes) {
        if (colour.PixelBytes() == 4) {
            FillColumns<4>(start, rowBytes, width, height, colour.Bytes());
        } else {
            FillColumns<16>(start, rowBytes, width, height, colour.Bytes());
        }
        return;
    }
    FillWideRows({.start = start, .rowBytes = rowBytes, .bytes = bytes, .height = height}, colour);
}

}  // namespace zelcore
