#include "Host/Lineup/Check/Sound/Measure/FlatTops.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace lineup::sound {

namespace {

constexpr int kUnitBits = 23;  // HopFeatures counts bits in units of 2^-23

// The step between samples of the hop.
double StepOf(const HopFeatures& hop) {
    const bool isFiner = (hop.bits & HopFeatures::kFiner) != 0;
    const std::uint32_t whole = hop.bits & ~HopFeatures::kFiner;
    return isFiner || whole == 0 ? std::ldexp(1, -kUnitBits - 1) : std::ldexp(1, std::countr_zero(whole) - kUnitBits);
}

}  // namespace

void FlatTops::Add(const HopFeatures& hop, double omega) {
    least = std::min(least, hop.least);
    most = std::max(most, hop.most);
    const double height = static_cast<double>(hop.most - hop.least) / 2;
    if (height <= 0) {
        return;
    }
    const double rests = 2 * std::acos(std::max(0.0, 1 - StepOf(hop) / height)) / omega;
    const double fewest = std::max<double>(HopFeatures::kLeastRun, std::floor(rests) + 3);
    flatLeast = hop.flatLeast >= fewest ? std::min(flatLeast, hop.least) : flatLeast;
    flatMost = hop.flatMost >= fewest ? std::max(flatMost, hop.most) : flatMost;
}

std::optional<double> FlatTops::Height(double zero) const {
    const bool isLowFlat = flatLeast < 0 && flatLeast == least;
    const bool isHighFlat = flatMost > 0 && flatMost == most;
    if (!isLowFlat && !isHighFlat) {
        return std::nullopt;
    }
    const double low = isLowFlat ? -static_cast<double>(least) : 0;
    const double high = isHighFlat ? static_cast<double>(most) : 0;
    return std::min(std::max(low, high), std::max(isLowFlat ? low + zero : 0, isHighFlat ? high - zero : 0));
}

}  // namespace lineup::sound
