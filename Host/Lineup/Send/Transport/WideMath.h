#pragma once

#include <cstdint>

namespace lineup {

/// Products of times since 1970 and bit rates need more than 64 bits; what is left of them does not.
__extension__ using Wide = __int128;

constexpr std::int64_t FloorDivided(Wide a, Wide b) {
    return static_cast<std::int64_t>(a / b - (a % b < 0 ? 1 : 0));
}

constexpr std::int64_t CeilDivided(Wide a, Wide b) {
    return -FloorDivided(-a, b);
}

/// From 0 on, below `divisor`, for negative numbers too.
constexpr std::int64_t Modulo(std::int64_t number, std::int64_t divisor) {
    const std::int64_t rest = number % divisor;
    return rest < 0 ? rest + divisor : rest;
}

}  // namespace lineup
