#pragma once

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

namespace studio {

/// The loudest sample of each channel since somebody last asked. The audio thread adds, the window takes;
/// neither waits for the other.
class PeakBank {
public:
    explicit PeakBank(std::size_t numChannels) : mPeaks(numChannels) {}

    [[nodiscard]] std::size_t NumChannels() const noexcept { return mPeaks.size(); }

    /// Takes `samples` of one channel into account. Audio thread.
    void Add(std::size_t channel, std::span<const float> samples) noexcept {
        float peak = 0;
        for (const float sample : samples) {
            peak = std::max(peak, std::abs(sample));
        }
        std::atomic<float>& cell = mPeaks[channel];
        float known = cell.load(std::memory_order_relaxed);
        while (peak > known && !cell.compare_exchange_weak(known, peak, std::memory_order_relaxed)) {
        }
    }

    /// The channel's linear peak since the last call. Any one thread.
    [[nodiscard]] float Take(std::size_t channel) noexcept {
        return mPeaks[channel].exchange(0, std::memory_order_relaxed);
    }

private:
    std::vector<std::atomic<float>> mPeaks;
};

}  // namespace studio
