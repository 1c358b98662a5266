#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace lineup::validation {

/// The buffers of an audio or peak request: `samples` floats a channel between guards, all of them holding
/// a NaN of known bits until they are written. What is wrong with them is said in words, which name the channel
/// and the sample and are empty when nothing is.
class GuardedBuffers {
public:
    GuardedBuffers(std::size_t channels, std::size_t samples);
    ~GuardedBuffers() = default;
    GuardedBuffers(const GuardedBuffers&) = delete;  // the pointers would point into the other one
    GuardedBuffers& operator=(const GuardedBuffers&) = delete;
    GuardedBuffers(GuardedBuffers&&) = default;
    GuardedBuffers& operator=(GuardedBuffers&&) = default;

    /// What the request carries.
    [[nodiscard]] float** Pointers() noexcept { return mPointers.data(); }
    [[nodiscard]] std::span<float> Channel(std::size_t channel);
    [[nodiscard]] std::span<const float> Channel(std::size_t channel) const;
    [[nodiscard]] std::size_t Channels() const noexcept { return mMemory.size(); }

    /// A guard or the list of buffers was written to.
    [[nodiscard]] std::string WrittenOutside() const;
    /// A sample of the first `channels` channels was left unwritten.
    [[nodiscard]] std::string LeftUnwritten(std::size_t channels) const;
    /// One of the first `channels` channels was written in part: some of its samples, but not all.
    [[nodiscard]] std::string WrittenInPart(std::size_t channels) const;
    /// A written sample of the first `channels` channels is not finite.
    [[nodiscard]] std::string NotFinite(std::size_t channels) const;
    /// A sample of the first `channels` channels is beyond `level` in either direction. NaN is not.
    [[nodiscard]] std::string LouderThan(double level, std::size_t channels) const;
    /// Anything was written to the channels from `first` on.
    [[nodiscard]] std::string WrittenFrom(std::size_t first) const;

private:
    std::size_t mSamples;
    std::vector<std::vector<float>> mMemory;  // [channel][guard, samples, guard]
    std::vector<float*> mPointers;
};

/// Whether the sample still holds what the buffer was filled with.
[[nodiscard]] bool IsUnwritten(float sample);

}  // namespace lineup::validation
