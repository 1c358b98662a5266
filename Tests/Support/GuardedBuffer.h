#pragma once

#include "Host/Lineup/Validation/Probes/GuardedBuffers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

/// The validator's guarded buffers, as tests of samples ask about them.
namespace test {

using lineup::validation::IsUnwritten;

/// The same bits, or NaN on both sides: the sign and payload of a computed NaN are the processor's own affair. A sample
/// that was never written is the same as nothing but itself.
inline bool SameSample(float a, float b) {
    if (std::isnan(a) && std::isnan(b)) {
        return IsUnwritten(a) == IsUnwritten(b);
    }
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// `b` was written, and is `a` times -1.
inline bool IsOpposite(float a, float b) {
    return std::isnan(a) ? std::isnan(b) && !IsUnwritten(b) : SameSample(-a, b);
}

/// The samples of one guarded buffer.
class GuardedChannel {
public:
    explicit GuardedChannel(std::span<float> samples) : mSamples(samples) {}

    [[nodiscard]] float* Data() const { return mSamples.data(); }
    [[nodiscard]] std::span<float> Samples() const { return mSamples; }
    float& operator[](std::size_t index) const { return mSamples[index]; }

    /// The samples never written.
    [[nodiscard]] std::size_t UnwrittenSamples() const {
        return static_cast<std::size_t>(std::ranges::count_if(mSamples, IsUnwritten));
    }

private:
    std::span<float> mSamples;
};

/// The buffers of a request.
class GuardedChannels : public lineup::validation::GuardedBuffers {
public:
    using GuardedBuffers::GuardedBuffers;

    GuardedChannel operator[](std::size_t channel) { return GuardedChannel(Channel(channel)); }
    [[nodiscard]] std::size_t Size() const { return Channels(); }

    /// No guard was written.
    [[nodiscard]] bool GuardsIntact() const { return WrittenOutside().empty(); }
};

/// One buffer alone.
class GuardedBuffer : private GuardedChannels, public GuardedChannel {
public:
    explicit GuardedBuffer(std::size_t size) : GuardedChannels(1, size), GuardedChannel(Channel(0)) {}

    using GuardedChannel::operator[];
    using GuardedChannels::GuardsIntact;
};

}  // namespace test
