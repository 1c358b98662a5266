#include "Host/Services/FillRows.h"

#include "Host/Interface/Core/VectorRuntime.h"

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

WriteLines WidestStores() {
    if (ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) == kVectorNotInitialised) {
        ippSafeInit();
    }
    return ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) >= kVector_e9 ? WriteLinesAvx : WriteLinesPlain;
}

#else

WriteLines WidestStores() {
    return WriteLinesPlain;
}

#endif

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

// The columns of the ramp are a pixel wide: a loop with the pixel in a register.
template <std::size_t kPixelBytes>
void FillColumns(std::uint8_t* start, std::ptrdiff_t rowBytes, int width, int height, const std::uint8_t* pixel) {
    std::array<std::uint8_t, kPixelBytes> colour{};
    std::memcpy(colour.data(), pixel, kPixelBytes);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* out = start + rowBytes * y;
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
    const WriteLines writeLines = WidestStores();
    for (int y = 0; y < height; ++y) {
        FillRow(start + rowBytes * y, bytes, rowBytes, colour, writeLines);
    }
}

}  // namespace zelcore
