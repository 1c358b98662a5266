#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The generator's sound written a second time, as plainly as it can be said, for its tests to compare
/// against. Times are bare 64-bit ticks that must not wrap; nothing here calls the generator.
namespace model {

inline constexpr std::int64_t kTicksPerSecond = 254016000000;
inline constexpr std::int64_t kTicksPerSampleAt48kHz = 5292000;

/// a / b rounded down; 0 when b is 0.
[[nodiscard]] std::int64_t FloorDivide(std::int64_t a, std::int64_t b);

/// `count` samples, `sampleTicks` apart, of a sine whose first sample has the phase of clip time `phaseTicks`.
/// The same operations in the same order as the generator's, so that the bits are the same.
[[nodiscard]] std::vector<float> Tone(std::int64_t sampleTicks, std::int64_t phaseTicks, double frequencyHz,
                                      double level, std::size_t count);

/// Both hold the same floats, bit for bit; the failure names the first sample that differs.
[[nodiscard]] testing::AssertionResult SameBits(std::span<const float> expected, std::span<const float> got);

/// Every sample is +0.0.
[[nodiscard]] testing::AssertionResult IsSilent(std::span<const float> samples);

/// The samples are a textbook sine at 48 kHz whose sample k is level * sin(2 pi f (firstIndex + k) / 48000).
/// The generator's 2 pi is too large by 1.7485e-7 and a piece counts whole cycles with it, so a piece of n
/// cycles strays by n * 1.7485e-7 radians at its end; the bound is that and 1e-7 of the level for rounding.
[[nodiscard]] testing::AssertionResult IsToneAt48kHz(std::span<const float> samples, std::int64_t firstIndex,
                                                     double frequencyHz, double level);

}  // namespace model
