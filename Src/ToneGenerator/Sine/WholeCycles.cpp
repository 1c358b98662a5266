#include "Src/ToneGenerator/Sine/WholeCycles.h"

#include <bit>
#include <cstddef>
#include <cstring>

namespace sine {

namespace {

constexpr std::uint64_t kPositiveZero = 0;

}  // namespace

bool WholeCycles::Takes(const Wave& wave, long long numSamples) {
    return numSamples > 0 && numSamples <= kMostSamples && numSamples % 2 == 0 &&
           std::bit_cast<std::uint64_t>(wave.phase) == kPositiveZero;
}

// A word that is read with acquire after it was written with release brings the version of its time along, so that a
// version that has not moved says that no word has.
bool WholeCycles::Find(const Wave& wave, float* out, long long numSamples) const {
    const auto words = static_cast<std::size_t>(numSamples / 2);
    const std::uint64_t version = mVersion.load(std::memory_order_acquire);
    if (version % 2 != 0 || mWords.load(std::memory_order_acquire) < words ||
        mStep.load(std::memory_order_acquire) != std::bit_cast<std::uint64_t>(wave.step) ||
        mAmplitude.load(std::memory_order_acquire) != std::bit_cast<std::uint64_t>(wave.amplitude)) {
        return false;
    }
    for (std::size_t i = 0; i < words; ++i) {
        const std::uint64_t pair = mSamples[i].load(std::memory_order_acquire);
        std::memcpy(out + 2 * i, &pair, sizeof pair);
    }
    return mVersion.load(std::memory_order_relaxed) == version;
}

void WholeCycles::Keep(const Wave& wave, const float* samples, long long numSamples) {
    std::uint64_t version = mVersion.load(std::memory_order_relaxed);
    if (version % 2 != 0 || !mVersion.compare_exchange_strong(version, version + 1, std::memory_order_acq_rel)) {
        return;
    }
    const auto words = static_cast<std::size_t>(numSamples / 2);
    mStep.store(std::bit_cast<std::uint64_t>(wave.step), std::memory_order_release);
    mAmplitude.store(std::bit_cast<std::uint64_t>(wave.amplitude), std::memory_order_release);
    mWords.store(words, std::memory_order_release);
    for (std::size_t i = 0; i < words; ++i) {
        std::uint64_t pair = 0;
        std::memcpy(&pair, samples + 2 * i, sizeof pair);
        mSamples[i].store(pair, std::memory_order_release);
    }
    mVersion.store(version + 2, std::memory_order_release);
}

}  // namespace sine
