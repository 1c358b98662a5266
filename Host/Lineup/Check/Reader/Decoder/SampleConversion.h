#pragma once

#include <cstddef>
#include <span>

struct AVFrame;

namespace lineup::decoding {

/// Writes `count` samples of a frame from its sample `first` on: sample i of channel c to to[c * count + i], full
/// scale is 1. Throws EarlyEnd for an unknown sample format.
void ConvertSamples(const AVFrame& frame, std::size_t first, std::size_t count, std::span<float> to);

}  // namespace lineup::decoding
