#pragma once

#include <cstddef>
#include <cstdint>

/// How floats become a file's samples; SamplePacking.h says what comes out. Each form writes the same bytes.
namespace lineup {

/// Packs `count` samples of `numChannels` channels from channels[c][i] side by side to `packed`, and nothing
/// behind them.
using PackFunction = void(const float* const* channels, std::size_t numChannels, std::size_t count,
                          std::uint8_t* packed);

/// One form: a function for each SampleFormat.
struct PackingKernels {
    PackFunction* s16;
    PackFunction* s24;
    PackFunction* s32;
    PackFunction* f32;
};

/// Sample by sample: the definition. The vector forms use it for what is left at the end and for odd numbers
/// of channels above one.
extern const PackingKernels kPackingPlain;

#if defined(__x86_64__)
extern const PackingKernels kPackingSse2;  ///< four samples at a time
extern const PackingKernels kPackingAvx2;  ///< eight
#endif

}  // namespace lineup
