#include "Host/Lineup/Export/Samples/Dither.h"

namespace lineup {
inline namespace parts {

namespace {

constexpr float kStep = 0x1p-15F;  // of 16 bits

// 64 bits that look like chance, another 64 for every number: the finaliser of SplitMix64.
std::uint64_t Scramble(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15U;
    number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31U);
}

// The difference of two even chances, in steps.
float Triangular(std::uint64_t chance) {
    constexpr double kWhole = 0x1p-32;
    const auto first = static_cast<double>(chance >> 32U);
    const auto second = static_cast<double>(chance & 0xFFFFFFFFU);
    return static_cast<float>((first - second) * kWhole);
}

}  // namespace

void AddDither(std::span<float> samples, std::int64_t position, int channel) {
    const std::uint64_t start = Scramble(static_cast<std::uint64_t>(channel)) + static_cast<std::uint64_t>(position);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (samples[i] != 0.0F) {
            samples[i] += Triangular(Scramble(start + i)) * kStep;
        }
    }
}

}  // namespace parts
}  // namespace lineup
