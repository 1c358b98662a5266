#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace lineup {

/// A sample, 1.0 at full scale, as an integer of kBits bits: the nearest, halves to even, clipped to what the
/// bits hold; NaN is 0. The float times a power of two is exact in a double: there is one rounding.
template <int kBits>
std::int32_t Quantise(float sample) {
    constexpr auto kFullScale = static_cast<double>(std::int64_t{1} << (kBits - 1));
    if (std::isnan(sample)) {
        return 0;
    }
    const double steps = std::nearbyint(static_cast<double>(sample) * kFullScale);
    return static_cast<std::int32_t>(std::clamp(steps, -kFullScale, kFullScale - 1));
}

}  // namespace lineup
