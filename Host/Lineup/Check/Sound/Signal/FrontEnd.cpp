#include "Host/Lineup/Check/Sound/Signal/FrontEnd.h"

#include "Host/Lineup/Check/Sound/Signal/RawHop.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kPassband = 0.43;  // of the narrow rate

struct Power {
    double energy = 0;
    float peak = 0;
};

Power PowerOf(std::span<const float> samples) {
    constexpr std::size_t kLanes = 8;
    std::array<float, kLanes> sums{};
    std::array<float, kLanes> peaks{};
    const std::size_t whole = samples.size() / kLanes * kLanes;
    for (std::size_t n = 0; n < whole; n += kLanes) {
        for (std::size_t i = 0; i < kLanes; ++i) {
            const float x = samples[n + i];
            sums[i] += x * x;
            peaks[i] = std::max(peaks[i], std::abs(x));
        }
    }
    Power power;
    for (std::size_t n = whole; n < samples.size(); ++n) {
        power.energy += static_cast<double>(samples[n]) * static_cast<double>(samples[n]);
        power.peak = std::max(power.peak, std::abs(samples[n]));
    }
    for (std::size_t i = 0; i < kLanes; ++i) {
        power.energy += static_cast<double>(sums[i]);
        power.peak = std::max(power.peak, peaks[i]);
    }
    return power;
}

}  // namespace

InputFrontEnd::InputFrontEnd(const Grid& grid) : mGrid(grid), mBands(static_cast<std::size_t>(grid.halvings) + 1) {
    for (int i = 0; i < grid.halvings; ++i) {
        const int left = grid.halvings - i;  // halvings from this stage's input to the narrow rate
        Halfband filter(kPassband / static_cast<double>(1 << left));
        const double weight = filter.HighWeight();
        mStages.push_back({std::move(filter), std::int64_t{grid.hop} << (left - 1), weight, 0, 0, 0});
    }
}

void InputFrontEnd::Process(std::span<float> samples, SlidingBuffer<float>& narrow, SlidingBuffer<HopFeatures>& hops) {
    const auto hop = static_cast<std::size_t>(mGrid.HopSamples());
    for (std::size_t at = 0; at < samples.size(); at += hop) {
        hops.Append(ExamineHop(samples.subspan(at, std::min(hop, samples.size() - at))));
    }
    mBands[0].assign(samples.begin(), samples.end());
    for (std::size_t i = 0; i < mStages.size(); ++i) {
        mBands[i + 1].clear();
        mHigh.clear();
        mStages[i].filter.Process(mBands[i], mBands[i + 1], mHigh);
        CountHigh(mStages[i], mHigh, hops);
    }
    narrow.Append(mBands.back());
}

void InputFrontEnd::CountHigh(Stage& stage, std::span<const float> high, SlidingBuffer<HopFeatures>& hops) {
    while (!high.empty()) {
        const std::int64_t inHop = stage.done % stage.hop;
        const auto count = std::min(high.size(), static_cast<std::size_t>(stage.hop - inHop));
        const Power power = PowerOf(high.first(count));
        stage.energy += power.energy;
        stage.peak = std::max(stage.peak, power.peak);
        stage.done += static_cast<std::int64_t>(count);
        high = high.subspan(count);
        if (stage.done % stage.hop == 0) {
            const std::int64_t number = stage.done / stage.hop - 1;
            if (number >= hops.First() && number < hops.End()) {
                HopFeatures& hop = hops[number];
                hop.high += static_cast<float>(stage.energy / static_cast<double>(stage.hop) * stage.weight);
                hop.highPeak = std::max(hop.highPeak, stage.peak);
            }
            stage.energy = 0;
            stage.peak = 0;
        }
    }
}

}  // namespace lineup::sound
