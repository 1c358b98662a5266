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

// The address may lie past the frame: fetching faults nowhere. (For writing, the processor would ask the
// other cores for the line; that is slower for frames larger than the caches.)
void FetchAhead(const std::uint8_t* line, std::ptrdiff_t distance) {
    const auto address = reinterpret_cast<std::uintptr_t>(line) + static_cast<std::uintptr_t>(distance);
    __builtin_prefetch(reinterpret_cast<const void*>(address));
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

[[gnu::target("avx")]] std::uint8_t* WriteLinesAvx(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t nextRow,
                                                   const ColourLine& colour) {
    const __m256 half = _mm256_load_ps(reinterpret_cast<const float*>(colour.Bytes()));
    for (std::ptrdiff_t i = 0; i < lines; ++i, out += kLineBytes) {
        FetchAhead(out, nextRow);
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

WriteLines CachedStores() {
    return HasAvx() ? WriteLinesAvx : WriteLinesPlain;
}

WriteLines StreamingStores() {
    return HasAvx() ? StreamLinesAvx : WriteLinesPlain;
}

// What was streamed is seen by other threads after this.
void EndStreaming() {
    _mm_sfence();
}

#else

WriteLines CachedStores() {
    return WriteLinesPlain;
}

WriteLines StreamingStores() {
    return WriteLinesPlain;
}

void EndStreaming() {}

#endif

// Whether the frame that a rectangle lies in is too large to stay in the caches until somebody reads it. Of the
// frame only the length of its rows is known: it is taken to be as high as a 16:9 picture, or as the rectangle.
bool OutgrowsCaches(std::ptrdiff_t rowBytes, std::ptrdiff_t pixelBytes, int height) {
    // The share of the cache that the C library too fills with ordinary stores before it streams.
    static const std::ptrdiff_t largest = SharedCacheBytes() / 4 * 3;
    const std::ptrdiff_t rows = std::max<std::ptrdiff_t>(height, rowBytes / pixelBytes * 9 / 16);
    return rowBytes > largest / rows;
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

void FillWideRows(std::uint8_t* start, std::ptrdiff_t rowBytes, int width, int height, const ColourLine& colour,
                  WriteLines writeLines) {
    for (int y = 0; y < height; ++y) {
        FillRow(start + rowBytes * y, std::ptrdiff_t{width} * colour.PixelBytes(), rowBytes, colour, writeLines);
    }
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
    // Every row reaches a line's boundary, or none does.
    const bool onBoundaries = BeginsLine(start + HeadBytes(start, colour)) && rowBytes % kLineBytes == 0;
    if (onBoundaries && OutgrowsCaches(rowBytes, colour.PixelBytes(), height)) {
        FillWideRows(start, rowBytes, width, height, colour, StreamingStores());
        EndStreaming();
    } else {
        FillWideRows(start, rowBytes, width, height, colour, CachedStores());
    }
}

}  // namespace zelcore
