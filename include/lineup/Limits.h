#pragma once

#include <lineup/Rational.h>

/// What may be chosen of a clip, wherever it is chosen: on a command line, in a dialog, a document or a program. The
/// sizes of pictures stand with PictureFormat.
namespace lineup {

/// Frames a second.
inline constexpr int kLowestFrameRate = 1;
inline constexpr int kHighestFrameRate = 240;

/// Of a frame rate's numerator and denominator: products of times stay within 64 bits.
inline constexpr int kLargestRateTerm = 1'000'000;

/// Whether pictures can follow each other at this rate.
constexpr bool IsFrameRate(Rational rate) noexcept {
    const auto isTerm = [](int term) { return term >= 1 && term <= kLargestRateTerm; };
    return isTerm(rate.num) && isTerm(rate.den) && rate.num >= kLowestFrameRate * rate.den &&
           rate.num <= kHighestFrameRate * rate.den;
}

/// Samples a second of a clip, Hz.
inline constexpr int kLowestSampleRateHz = 8000;
inline constexpr int kHighestSampleRateHz = 384000;

}  // namespace lineup
