#pragma once

#include <atomic>
#include <cmath>
#include <cstddef>
#include <span>

namespace studio {

/// How loud a playback is heard. A change is taken up over a block of sound, so that it does not click; a gain of 1
/// changes no bit.
class Volume {
public:
    /// Linear, 0 for silence. Any thread.
    void Set(float gain) noexcept { mGain.store(gain, std::memory_order_relaxed); }

    [[nodiscard]] float Wanted() const noexcept { return mGain.load(std::memory_order_relaxed); }

    /// Before anything is heard.
    void Begin(float gain) noexcept {
        Set(gain);
        mApplied = gain;
    }

    /// `interleaved`: whole frames of `outputs` samples. Audio thread.
    void Apply(std::span<float> interleaved, std::size_t outputs) noexcept {
        const float wanted = mGain.load(std::memory_order_relaxed);
        if (wanted == 1 && mApplied == 1) {
            return;
        }
        const std::size_t frames = interleaved.size() / outputs;
        const float step = (wanted - mApplied) / static_cast<float>(frames);
        for (std::size_t i = 0; i < interleaved.size(); ++i) {
            const std::size_t frame = i / outputs + 1;
            interleaved[i] *= mApplied + step * static_cast<float>(frame);
        }
        mApplied = wanted;
    }

private:
    std::atomic<float> mGain{1};
    float mApplied = 1;  // the audio thread's own
};

}  // namespace studio
