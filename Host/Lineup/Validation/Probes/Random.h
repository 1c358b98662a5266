#pragma once

#include <cstdint>
#include <random>

namespace lineup::validation {

/// Numbers drawn from a seed: the same ones with every standard library.
class Random {
public:
    explicit Random(std::uint64_t seed) : mEngine(seed) {}

    /// A number of [0, limit).
    std::uint64_t Below(std::uint64_t limit) { return mEngine() % limit; }

    /// All 64 bits.
    std::uint64_t AnyBits() { return mEngine(); }

private:
    std::mt19937_64 mEngine;
};

}  // namespace lineup::validation
