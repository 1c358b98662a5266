#pragma once

#include <lineup/Api.h>
#include <lineup/Rational.h>

#include <cstdint>

namespace lineup {
inline namespace parts {

/// The sample at which frame `frame` (0 or more) starts, to the nearest, halves up: where the first
/// `frame` frames end. Five frames at 29.97 are 8008 samples at 48 kHz, one is 1602 (1601.6).
LINEUP_API std::int64_t SamplesAtFrame(std::int64_t frame, Rational frameRate, int sampleRateHz);

}  // namespace parts
}  // namespace lineup
