#include "Host/Lineup/Validation/Probes/GuardedBuffers.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace lineup::validation {

namespace {

constexpr std::size_t kGuard = 256;  // samples on either side

// A NaN that no computation makes.
constexpr std::uint32_t kUnwrittenBits = 0x7FA5C3E1;

// The first sample of the channels [first, last) that `isWrong`, in words.
template <class IsWrong>
std::string Find(const GuardedBuffers& buffers, std::size_t first, std::size_t last, const char* wrong,
                 IsWrong isWrong) {
    for (std::size_t c = first; c < last; ++c) {
        const std::span<const float> samples = buffers.Channel(c);
        const auto found = std::ranges::find_if(samples, isWrong);
        if (found != samples.end()) {
            return fmt::format("channel {}, sample {} {}", c, found - samples.begin(), wrong);
        }
    }
    return {};
}

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

std::span<float> GuardedBuffers::Channel(std::size_t channel) {
    return std::span(mMemory.at(channel)).subspan(kGuard, mSamples);
}

std::span<const float> GuardedBuffers::Channel(std::size_t channel) const {
    return std::span(mMemory.at(channel)).subspan(kGuard, mSamples);
}

std::string GuardedBuffers::WrittenOutside() const {
    for (std::size_t c = 0; c < mMemory.size(); ++c) {
        const std::vector<float>& memory = mMemory[c];
        if (mPointers[c] != memory.data() + kGuard) {
            return fmt::format("the list of buffers was changed at channel {}", c);
        }
        for (std::size_t i = 0; i < kGuard; ++i) {
            if (!IsUnwritten(memory[kGuard - 1 - i])) {
                return fmt::format("channel {} was written to {} samples before its buffer", c, i + 1);
            }
            if (!IsUnwritten(memory[kGuard + mSamples + i])) {
                return fmt::format("channel {} was written to past the block: {} samples after its end", c, i + 1);
            }
        }
    }
    return {};
}

std::string GuardedBuffers::LeftUnwritten(std::size_t channels) const {
    return Find(*this, 0, channels, "was left unwritten", IsUnwritten);
}

std::string GuardedBuffers::WrittenInPart(std::size_t channels) const {
    for (std::size_t c = 0; c < channels; ++c) {
        if (!std::ranges::all_of(Channel(c), IsUnwritten)) {
            if (std::string text = Find(*this, c, c + 1, "was left unwritten", IsUnwritten); !text.empty()) {
                return text;
            }
        }
    }
    return {};
}

std::string GuardedBuffers::NotFinite(std::size_t channels) const {
    return Find(*this, 0, channels, "is not finite",
                [](float sample) { return !std::isfinite(sample) && !IsUnwritten(sample); });
}

std::string GuardedBuffers::LouderThan(double level, std::size_t channels) const {
    return Find(*this, 0, channels, fmt::format("is beyond the level of {}", level).c_str(),
                [level](float sample) { return std::abs(static_cast<double>(sample)) > level; });
}

std::string GuardedBuffers::WrittenFrom(std::size_t first) const {
    return Find(*this, first, mMemory.size(), "was written and should not be",
                [](float sample) { return !IsUnwritten(sample); });
}

}  // namespace lineup::validation
