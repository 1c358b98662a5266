#include "Host/Services/Frames/RowWriters.h"

#include "Host/Interface/Core/VectorRuntime.h"

#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace zelcore {

namespace {

template <std::size_t kPixelBytes>
void WritePixelsOf(std::uint8_t* out, std::ptrdiff_t bytes, const std::uint8_t* pixel) {
    for (const std::uint8_t* const end = out + bytes; out < end; out += kPixelBytes) {
        std::memcpy(out, pixel, kPixelBytes);
    }
}

void WritePixels(std::uint8_t* out, std::ptrdiff_t bytes, const ColourLine& colour) {
    if (colour.PixelBytes() == 4) {
        WritePixelsOf<4>(out, bytes, colour.Bytes());
    } else {
        WritePixelsOf<16>(out, bytes, colour.Bytes());
    }
}

// Writes `lines` whole lines.
using WriteLines = void (*)(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t ahead, const ColourLine& colour);

// Every byte once: the pixels before a line's boundary, the whole lines, the pixels after them.
template <WriteLines kWriteLines>
void WriteInOrder(std::uint8_t* out, std::ptrdiff_t bytes, std::ptrdiff_t ahead, const ColourLine& colour) {
    const std::ptrdiff_t head = HeadBytes(out, colour);
    const std::ptrdiff_t tail = (bytes - head) % ColourLine::kBytes;
    WritePixels(out, head, colour);
    kWriteLines(out + head, (bytes - head) / ColourLine::kBytes, ahead, colour);
    WritePixels(out + bytes - tail, tail, colour);
}

void KeepLinesPlain(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t ahead, const ColourLine& colour) {
    for (std::ptrdiff_t i = 0; i < lines; ++i, out += ColourLine::kBytes) {
        FetchAhead<Nearness::Innermost>(out, ahead);
        std::memcpy(out, colour.Bytes(), ColourLine::kBytes);
    }
}

#if defined(__x86_64__)

[[gnu::target("avx"), gnu::always_inline]] inline void StoreLine(std::uint8_t* out, __m256 half) {
    _mm256_storeu_ps(reinterpret_cast<float*>(out), half);
    _mm256_storeu_ps(reinterpret_cast<float*>(out + ColourLine::kBytes / 2), half);
}

// A line's worth at the row's start and one at its end overlap the whole lines in between: from any pixel on, a
// colour is the same bytes. Single pixels up to the boundaries would take longer than the lines of a short row.
template <Nearness kInto>
[[gnu::target("avx")]] void KeepRowAvx(std::uint8_t* out, std::ptrdiff_t bytes, std::ptrdiff_t ahead,
                                       const ColourLine& colour) {
    const __m256 half = _mm256_load_ps(reinterpret_cast<const float*>(colour.Bytes()));
    std::uint8_t* const last = out + bytes - ColourLine::kBytes;
    const std::ptrdiff_t head = HeadBytes(out, colour);
    FetchAhead<kInto>(out, ahead);
    StoreLine(out, half);
    for (out += head == 0 ? ColourLine::kBytes : head; out < last; out += ColourLine::kBytes) {
        FetchAhead<kInto>(out, ahead);
        StoreLine(out, half);
    }
    FetchAhead<kInto>(last, ahead);
    StoreLine(last, half);
}

// `out` begins a line.
[[gnu::target("avx")]] void StreamLinesAvx(std::uint8_t* out, std::ptrdiff_t lines, std::ptrdiff_t ahead,
                                           const ColourLine& colour) {
    const __m256 half = _mm256_load_ps(reinterpret_cast<const float*>(colour.Bytes()));
    for (std::ptrdiff_t i = 0; i < lines; ++i, out += ColourLine::kBytes) {
        _mm256_stream_ps(reinterpret_cast<float*>(out), half);
        _mm256_stream_ps(reinterpret_cast<float*>(out + ColourLine::kBytes / 2), half);
    }
    FetchAhead<Nearness::Innermost>(out, ahead);  // a line that two rectangles share
}

bool HasAvx() {
    if (ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) == kVectorNotInitialised) {
        ippSafeInit();
    }
    return ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) >= kVectorE9;
}

#endif

}  // namespace

#if defined(__x86_64__)

WriteRow KeepRow(Nearness fetchInto) {
    if (!HasAvx()) {
        return WriteInOrder<KeepLinesPlain>;
    }
    return fetchInto == Nearness::Outer ? KeepRowAvx<Nearness::Outer> : KeepRowAvx<Nearness::Innermost>;
}

WriteRow StreamRow() {
    return HasAvx() ? WriteInOrder<StreamLinesAvx> : WriteInOrder<KeepLinesPlain>;
}

void EndStreaming() {
    _mm_sfence();
}

#else

WriteRow KeepRow(Nearness /*fetchInto*/) {
    return WriteInOrder<KeepLinesPlain>;
}

WriteRow StreamRow() {
    return WriteInOrder<KeepLinesPlain>;
}

void EndStreaming() {}

#endif

}  // namespace zelcore
