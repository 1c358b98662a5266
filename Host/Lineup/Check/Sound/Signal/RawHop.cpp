#include "Host/Lineup/Check/Sound/Signal/RawHop.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr std::size_t kRawHopLanes = 8;
constexpr float kBeyond = 16;      // times full scale: no recording of a line-up holds more
constexpr float kUnit = 8388608;   // 2^23: a 24-bit sample is a whole number of these
constexpr float kNearTop = 2e-3F;  // of the swing

using Floats = std::array<float, kRawHopLanes>;
using Words = std::array<std::uint32_t, kRawHopLanes>;

struct RawLanes {
    Floats least{};
    Floats most{};
    Words bits{};
    Words finer{};
};

// One sample into each lane: no lane knows of another, so that they are worked out together.
void Take(float* samples, RawLanes& lanes) {
    for (std::size_t i = 0; i < kRawHopLanes; ++i) {
        const float x = std::abs(samples[i]) <= kBeyond ? samples[i] : 0.0F;
        samples[i] = x;
        lanes.least[i] = x < lanes.least[i] ? x : lanes.least[i];
        lanes.most[i] = x > lanes.most[i] ? x : lanes.most[i];
        const float units = std::abs(x) * kUnit;
        const auto whole = static_cast<std::int32_t>(units);
        lanes.bits[i] |= static_cast<std::uint32_t>(whole);
        lanes.finer[i] |= static_cast<float>(whole) != units ? 1U : 0U;
    }
}

// Whether HopFeatures::kLeastRun samples in a row are alike: all places at once, as few hops hold such.
bool HoldsRun(std::span<const float> samples) {
    static_assert(HopFeatures::kLeastRun == 4);
    std::uint32_t found = 0;
    for (std::size_t i = 0; i + HopFeatures::kLeastRun <= samples.size(); ++i) {
        found |= static_cast<std::uint32_t>(samples[i] == samples[i + 1]) &
                 static_cast<std::uint32_t>(samples[i] == samples[i + 2]) &
                 static_cast<std::uint32_t>(samples[i] == samples[i + 3]);
    }
    return found != 0;
}

// The most samples in a row that are `height` exactly.
std::uint32_t LongestRun(std::span<const float> samples, float height) {
    std::uint32_t longest = 0;
    std::uint32_t run = 0;
    for (const float x : samples) {
        run = x == height ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

std::uint16_t Saturated(std::uint32_t count) {
    return static_cast<std::uint16_t>(std::min<std::uint32_t>(count, 0xFFFF));
}

}  // namespace

HopFeatures ExamineHop(std::span<float> samples) {
    RawLanes lanes;
    lanes.least.fill(kBeyond);
    lanes.most.fill(-kBeyond);
    const std::size_t whole = samples.size() / kRawHopLanes * kRawHopLanes;
    for (std::size_t n = 0; n < whole; n += kRawHopLanes) {
        Take(samples.data() + n, lanes);
    }
    if (whole < samples.size()) {
        Floats rest;
        rest.fill(samples[whole]);
        std::copy(samples.begin() + static_cast<std::ptrdiff_t>(whole), samples.end(), rest.begin());
        Take(rest.data(), lanes);
        std::copy_n(rest.begin(), samples.size() - whole, samples.begin() + static_cast<std::ptrdiff_t>(whole));
    }
    HopFeatures hop;
    hop.least = *std::ranges::min_element(lanes.least);
    hop.most = *std::ranges::max_element(lanes.most);
    std::uint32_t finer = 0;
    for (std::size_t i = 0; i < kRawHopLanes; ++i) {
        hop.bits |= lanes.bits[i];
        finer |= lanes.finer[i];
    }
    hop.bits |= finer != 0 ? HopFeatures::kFiner : 0;
    const float near = kNearTop * (hop.most - hop.least) / 2;
    const float lowTop = hop.least + near;
    const float highTop = hop.most - near;
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    for (const float x : samples) {
        low += x <= lowTop ? 1U : 0U;
        high += x >= highTop ? 1U : 0U;
    }
    hop.atLeast = Saturated(low);
    hop.atMost = Saturated(high);
    if (HoldsRun(samples)) {
        hop.flatLeast = Saturated(LongestRun(samples, hop.least));
        hop.flatMost = Saturated(LongestRun(samples, hop.most));
    }
    return hop;
}

}  // namespace lineup::sound
