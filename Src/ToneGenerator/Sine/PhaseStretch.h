#pragma once

#include <cstdint>

namespace sine {

// The functions are static: code of one instruction level must never serve another.

/// Phases in even steps: adding `step` to `phase` again and again gives exactly phase + j * increment for
/// j < count. Each such product and sum is exact in double precision, in any order of evaluation.
struct Stretch {
    double increment;
    long long count;  ///< 0 where the additions are not known to be even
};

/// The value one power of two above the magnitude of a finite, normal `phase`, with its sign: the end of
/// the range in which doubles lie as far apart as they do at `phase`.
[[maybe_unused]] static constexpr double EndOfBinade(double phase) noexcept {
    constexpr std::uint64_t kSignAndExponent = 0xFFF0'0000'0000'0000;
    return 2.0 * __builtin_bit_cast(double, __builtin_bit_cast(std::uint64_t, phase) & kSignAndExponent);
}

/// The even stretch that begins at `phase`, at most `mostSamples` (>= 0) long.
///
/// While phases stay in one binade they are multiples of one spacing u, so an addition moves the phase by
/// `step` rounded to u. The rounding is the same each time, but for a step midway between two multiples:
/// that goes to the even neighbour, which depends on the phase. Two additions that move the phase by the
/// same amount show that this one goes the same way for good: after an even phase the next one is even too.
/// Every phase and distance in the stretch is a multiple of u below 2^53 u, which makes the products exact.
[[maybe_unused]] static constexpr Stretch FindStretch(double phase, double step, long long mostSamples) noexcept {
    const double next = phase + step;
    const double increment = next - phase;
    const bool growing = increment > 0.0 ? phase > 0.0 : increment < 0.0 && phase < 0.0;
    if (!growing || (next + step) - next != increment) {
        return {0.0, 0};
    }
    // The quotient may be rounded up to the next integer: the last whole step is left out.
    const double steps = (EndOfBinade(phase) - phase) / increment;
    if (!(steps < static_cast<double>(mostSamples))) {
        return {increment, mostSamples};
    }
    return {increment, static_cast<long long>(steps)};
}

}  // namespace sine
