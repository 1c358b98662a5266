#pragma once

#include <cstdint>
#include <limits>

/// Arithmetic on clip positions with a defined result for every input: 64-bit sums and products
/// wrap, quotients round down, and a double that does not fit becomes the most negative value.
/// Everything here is free of undefined behaviour and safe to call from any thread.
namespace zelcore::numeric {

constexpr std::int64_t WrappingAdd(std::int64_t a, std::int64_t b) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

constexpr std::int64_t WrappingSubtract(std::int64_t a, std::int64_t b) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

constexpr std::int64_t WrappingMultiply(std::int64_t a, std::int64_t b) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

/// The largest integer not above a / b; 0 when b is 0. The one quotient that does not fit
/// (most negative / -1) wraps to the most negative value.
constexpr std::int64_t FloorDivide(std::int64_t a, std::int64_t b) noexcept {
    if (b == 0) {
        return 0;
    }
    if (b == -1) {
        return WrappingSubtract(0, a);
    }
    const std::int64_t quotient = a / b;
    const bool roundedUp = (a % b != 0) && ((a < 0) != (b < 0));
    return roundedUp ? quotient - 1 : quotient;
}

/// `value` truncated towards zero; the most negative 64-bit value when it does not fit or is not a
/// number, which is what x86-64's own conversion instruction answers.
constexpr std::int64_t TruncateToInt64(double value) noexcept {
    constexpr double kTwoTo63 = 9223372036854775808.0;
    if (value >= -kTwoTo63 && value < kTwoTo63) {
        return static_cast<std::int64_t>(value);
    }
    return std::numeric_limits<std::int64_t>::min();
}

}  // namespace zelcore::numeric
