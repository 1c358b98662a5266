#include "Host/Lineup/Check/Sound/Find/SteadySamples.h"

#include <array>
#include <cmath>
#include <numbers>

namespace lineup::sound {

namespace {

constexpr std::size_t kTaps = 24;
constexpr double kBefore = 11;       // taps before the sample
constexpr std::size_t kParts = 128;  // of a sample: between them weights lie on a line

using Weights = std::array<float, kTaps>;

// A sinc under a window of a cosine squared, for each part of a sample.
std::vector<Weights> MakeWeights() {
    std::vector<Weights> weights(kParts + 1);
    for (std::size_t part = 0; part <= kParts; ++part) {
        for (std::size_t tap = 0; tap < kTaps; ++tap) {
            const double away = static_cast<double>(part) / kParts + kBefore - static_cast<double>(tap);
            const double window = std::cos(std::numbers::pi * away / (kTaps + 2));
            const double angle = std::numbers::pi * away;
            const double sinc = std::abs(angle) < 1e-9 ? 1 : std::sin(angle) / angle;
            weights[part][tap] = static_cast<float>(sinc * window * window);
        }
    }
    return weights;
}

// The sample at a place between samples; those beyond the ends are silent.
float Between(const SlidingBuffer<float>& samples, double at) {
    static const std::vector<Weights> kWeights = MakeWeights();
    const auto whole = static_cast<std::int64_t>(std::floor(at));
    const double part = (at - static_cast<double>(whole)) * kParts;
    const auto below = static_cast<std::size_t>(part);
    const auto slope = static_cast<float>(part - static_cast<double>(below));
    const std::int64_t first = whole - static_cast<std::int64_t>(kTaps / 2) + 1;
    if (first < samples.First() || first + static_cast<std::int64_t>(kTaps) > samples.End()) {
        return 0;
    }
    const std::span<const float> near = samples.Get(first, first + static_cast<std::int64_t>(kTaps));
    const Weights& low = kWeights[below];
    const Weights& high = kWeights[below + 1];
    float sum = 0;
    for (std::size_t tap = 0; tap < kTaps; ++tap) {
        sum += near[tap] * (low[tap] + slope * (high[tap] - low[tap]));
    }
    return sum;
}

}  // namespace

std::span<const float> SteadySamples(const History& history, const Placing& placing, std::size_t input,
                                     std::int64_t first, std::int64_t end, std::vector<float>& buffer) {
    const SlidingBuffer<float>& narrow = history.narrow[input];
    if (placing.wanders.empty()) {
        return narrow.Get(first, end);
    }
    const double rate = history.grid.NarrowRate();
    const double middle = placing.LateAt(static_cast<double>(first + end - 1) / 2 / rate);
    buffer.clear();
    for (std::int64_t n = first; n < end; ++n) {
        const double second = static_cast<double>(n) / rate;
        buffer.push_back(Between(narrow, static_cast<double>(n) + (placing.LateAt(second) - middle) * rate));
    }
    return buffer;
}

}  // namespace lineup::sound
