#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lineup {
inline namespace parts {

/// Full scale is 1.0; samples are rounded to the nearest step, halves to even, and clipped to the format's
/// range; NaN packs as 0. F32 copies the bits, unclipped.

/// The bytes of one sample in an encoder's frame: 2 for S16, 4 for the others.
LINEUP_API std::size_t BytesPerSample(SampleFormat format);

/// Packs one channel for an encoder: sample i of `samples` goes to place i * stride of `destination`, counted
/// in packed samples. S24 lies in the upper three bytes of a 32-bit sample whose lowest byte is 0. What lies
/// between the places is not touched.
LINEUP_API void PackSamples(std::span<const float> samples, SampleFormat format, void* destination, std::size_t stride);

/// The bytes of one sample in a file: 2 for S16, 3 for S24, 4 for the others.
LINEUP_API std::size_t PackedBytes(SampleFormat format);

/// Packs `count` samples of all channels as a file holds them uncompressed: little-endian, the channels of one
/// moment side by side in the order of `channels`. Writes count * channels.size() * PackedBytes(format) bytes.
LINEUP_API void PackFrames(std::span<const float* const> channels, std::size_t count, SampleFormat format,
                           std::uint8_t* packed);

}  // namespace parts
}  // namespace lineup
