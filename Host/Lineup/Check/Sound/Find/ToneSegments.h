#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace lineup::sound {

/// A stretch of samples that is one sine and nothing else.
struct ToneSegment {
    std::size_t first = 0;      ///< sample
    std::size_t end = 0;        ///< the sample after the last
    double omega = 0;           ///< radians a sample
    std::complex<double> gain;  ///< sample n is the imaginary part of gain * exp(i * omega * n)
};

/// Cuts samples that were computed, not recorded, into sines and what lies between them. Sines are found where they
/// last for kShortestTone samples or longer; where they begin and end comes out to the sample.
[[nodiscard]] std::vector<ToneSegment> FindToneSegments(std::span<const float> samples);

inline constexpr std::size_t kShortestTone = 240;

}  // namespace lineup::sound
