#pragma once

#include <cstdint>

namespace lineup {

/// A frame rate or an aspect ratio as a fraction: 30000/1001 is 29.97 frames a second.
struct Rational {
    int num = 0;
    int den = 1;

    constexpr bool operator==(const Rational&) const noexcept = default;
};

/// Whether both are the same number: 50/2 and 25/1 are.
constexpr bool SameRatio(Rational a, Rational b) noexcept {
    return std::int64_t{a.num} * b.den == std::int64_t{b.num} * a.den;
}

}  // namespace lineup
