#pragma once

#include "Src/ToneGenerator/Sine/PlainSine.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace sine {

/// Keeps the first samples of one wave that begins at phase 0. A host that asks for sound by the millisecond asks for
/// the same ones a thousand times a second where the tone is of whole kilohertz, as line-up tone is. Any thread; never
/// waits: while one thread keeps a wave, others neither find nor keep one.
class WholeCycles {
public:
    static constexpr long long kMostSamples = 96;

    /// Whether a wave of so many samples can be found here at all.
    [[nodiscard]] static bool Takes(const Wave& wave, long long numSamples);

    /// Writes the samples of a wave that it takes; false where they are not kept, and then anything may have been
    /// written.
    bool Find(const Wave& wave, float* out, long long numSamples) const;

    /// Keeps the samples of a wave that it takes, in place of those kept before.
    void Keep(const Wave& wave, const float* samples, long long numSamples);

private:
    using Word = std::atomic<std::uint64_t>;

    Word mVersion = 0;  // odd while the rest is written
    Word mStep = 0;
    Word mAmplitude = 0;
    Word mWords = 0;  // that are kept, two samples each
    std::array<Word, kMostSamples / 2> mSamples{};
};

}  // namespace sine
