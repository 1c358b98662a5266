#pragma once

namespace lineup {

/// A frame rate or an aspect ratio as a fraction: 30000/1001 is 29.97 frames a second.
struct Rational {
    int num = 0;
    int den = 1;

    constexpr bool operator==(const Rational&) const noexcept = default;
};

}  // namespace lineup
