#pragma once

#include <QAudioFormat>
#include <cstddef>
#include <span>

namespace studio {

/// Bytes of one sample as a device takes it; 0 for a format that is not known.
[[nodiscard]] std::size_t BytesOf(QAudioFormat::SampleFormat format) noexcept;

/// Writes `samples` to `target`, BytesOf(format) bytes each, in the machine's byte order. Floats are copied bit
/// for bit; whole numbers are rounded to the nearest, full scale being 1.0, and clipped.
void ConvertSamples(std::span<const float> samples, QAudioFormat::SampleFormat format, char* target) noexcept;

}  // namespace studio
