#include "Host/Lineup/Validation/GuardedBuffers.h"

#include "Host/Lineup/Validation/Examination.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace lineup::validation {

namespace {

constexpr std::size_t kGuard = 256;  // samples on either side

// A not-a-number that no computation makes.
constexpr std::uint32_t kUnwrittenBits = 0x7FA5C3E1;

}  // namespace

bool IsUnwritten(float sample) {
    return std::bit_cast<std::uint32_t>(sample) == kUnwrittenBits;
}

GuardedBuffers::GuardedBuffers(std::size_t channels, std::size_t samples)
    : mSamples(samples),
      mMemory(channels, std::vector<float>(samples + 2 * kGuard, std::bit_cast<float>(kUnwrittenBits))) {
    for (std::vector<float>& memory : mMemory) {
        mPointers.push_back(memory.data() + kGuard);
    }
}

std::span<const float> GuardedBuffers::Channel(std::size_t channel) const {
    return std::span(mMemory.at(channel)).subspan(kGuard, mSamples);
}

void GuardedBuffers::RequireNothingOutside(std::string_view what) const {
    for (std::size_t c = 0; c < mMemory.size(); ++c) {
        const std::vector<float>& memory = mMemory[c];
        Require(mPointers[c] == memory.data() + kGuard, "{} changed the list of buffers at channel {}", what, c);
        for (std::size_t i = 0; i < kGuard; ++i) {
            Require(IsUnwritten(memory[kGuard - 1 - i]), "{} wrote {} samples before the buffer of channel {}", what,
                    i + 1, c);
            Require(IsUnwritten(memory[kGuard + mSamples + i]),
                    "{} wrote past the block: {} samples after its end, channel {}", what, i + 1, c);
        }
    }
}

void GuardedBuffers::RequireWritten(std::size_t channels, std::string_view what) const {
    for (std::size_t c = 0; c < channels; ++c) {
        const std::span<const float> samples = Channel(c);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            Require(!IsUnwritten(samples[i]), "{}: channel {}, sample {} was left unwritten", what, c, i);
        }
    }
}

void GuardedBuffers::RequireWithin(std::size_t channels, double level, std::string_view what) const {
    for (std::size_t c = 0; c < channels; ++c) {
        const std::span<const float> samples = Channel(c);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            Require(std::isfinite(samples[i]), "{}: channel {}, sample {} is not finite", what, c, i);
            Require(std::abs(static_cast<double>(samples[i])) <= level,
                    "{}: channel {}, sample {} is {}, beyond the level of {}", what, c, i, samples[i], level);
        }
    }
}

void GuardedBuffers::RequireUntouchedFrom(std::size_t first, std::string_view what) const {
    for (std::size_t c = first; c < mMemory.size(); ++c) {
        const std::span<const float> samples = Channel(c);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            Require(IsUnwritten(samples[i]), "{}: channel {}, sample {} was written and should not be", what, c, i);
        }
    }
}

}  // namespace lineup::validation
