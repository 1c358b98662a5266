#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace lineup::validation {

/// The buffers of an audio or peak request: `samples` floats a channel between guards, all of them
/// holding a not-a-number of known bits until they are written.
class GuardedBuffers {
public:
    GuardedBuffers(std::size_t channels, std::size_t samples);

    /// What the request carries.
    [[nodiscard]] float** Pointers() noexcept { return mPointers.data(); }
    [[nodiscard]] std::span<const float> Channel(std::size_t channel) const;
    [[nodiscard]] std::size_t Channels() const noexcept { return mMemory.size(); }

    /// Each throws Failure, naming `what` was asked for, the channel and the sample:
    /// when a guard or the list of buffers was written to,
    void RequireNothingOutside(std::string_view what) const;
    /// when a sample of the first `channels` channels was left unwritten,
    void RequireWritten(std::size_t channels, std::string_view what) const;
    /// or is not finite, or is beyond `level` in either direction,
    void RequireWithin(std::size_t channels, double level, std::string_view what) const;
    /// when anything was written to the channels from `first` on.
    void RequireUntouchedFrom(std::size_t first, std::string_view what) const;

private:
    std::size_t mSamples;
    std::vector<std::vector<float>> mMemory;  // [channel][guard, samples, guard]
    std::vector<float*> mPointers;
};

/// Whether the sample still holds what the buffer was filled with.
[[nodiscard]] bool IsUnwritten(float sample);

}  // namespace lineup::validation
