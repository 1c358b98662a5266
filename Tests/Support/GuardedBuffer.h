#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace test {

/// A NaN that no computation makes: a float that still holds it was never written.
inline constexpr std::uint32_t kUnwrittenBits = 0x7FA5C3E1;

inline bool IsUnwritten(float value) {
    return std::bit_cast<std::uint32_t>(value) == kUnwrittenBits;
}

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

/// A float buffer with guards on both sides, all of it holding the tagged NaN until written.
class GuardedBuffer {
public:
    explicit GuardedBuffer(std::size_t size)
        : mSize(size), mMemory(size + 2 * kGuard, std::bit_cast<float>(kUnwrittenBits)) {}

    [[nodiscard]] float* Data() { return mMemory.data() + kGuard; }
    [[nodiscard]] std::span<float> Samples() { return {Data(), mSize}; }
    float& operator[](std::size_t index) { return mMemory.at(kGuard + index); }

    /// No guard was written.
    [[nodiscard]] bool GuardsIntact() const {
        for (std::size_t i = 0; i < kGuard; ++i) {
            if (!IsUnwritten(mMemory[i]) || !IsUnwritten(mMemory[kGuard + mSize + i])) {
                return false;
            }
        }
        return true;
    }

    /// The samples never written.
    [[nodiscard]] std::size_t UnwrittenSamples() {
        std::size_t count = 0;
        for (const float sample : Samples()) {
            count += IsUnwritten(sample) ? 1U : 0U;
        }
        return count;
    }

private:
    static constexpr std::size_t kGuard = 64;

    std::size_t mSize;
    std::vector<float> mMemory;
};

/// The buffers of a request: one guarded buffer a channel, and the pointers a request carries.
class GuardedChannels {
public:
    GuardedChannels(std::size_t channels, std::size_t samples) : mChannels(channels, GuardedBuffer(samples)) {
        for (auto& channel : mChannels) {
            mPointers.push_back(channel.Data());
        }
    }

    [[nodiscard]] float** Pointers() { return mPointers.data(); }
    GuardedBuffer& operator[](std::size_t channel) { return mChannels.at(channel); }
    [[nodiscard]] std::size_t Size() const { return mChannels.size(); }

    [[nodiscard]] bool GuardsIntact() const {
        for (const auto& channel : mChannels) {
            if (!channel.GuardsIntact()) {
                return false;
            }
        }
        return true;
    }

private:
    std::vector<GuardedBuffer> mChannels;
    std::vector<float*> mPointers;
};

}  // namespace test
