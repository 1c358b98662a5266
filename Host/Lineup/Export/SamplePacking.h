#pragma once

#include "Host/Lineup/Api.h"
#include "Host/Lineup/Export/FormatTable.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lineup {

/// The bytes of one packed sample: 2 for S16, 4 for the others.
LINEUP_API std::size_t BytesPerSample(SampleFormat format);

/// Packs one channel: sample i of `samples` goes to place i * stride of `destination`, counted in packed
/// samples. Full scale is 1.0; samples are rounded to the nearest step, halves to even, and clipped
/// to the format's range; NaN packs as 0. F32 copies the bits, unclipped. S24 lies in the upper three
/// bytes of a 32-bit sample whose lowest byte is 0. What lies between the places is not touched.
LINEUP_API void PackSamples(std::span<const float> samples, SampleFormat format, void* destination, std::size_t stride);

}  // namespace lineup
