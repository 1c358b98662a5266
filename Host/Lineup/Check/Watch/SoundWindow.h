#pragma once

#include "Host/Lineup/Check/Sound/Signal/SlidingBuffer.h"
#include "Host/Lineup/Check/SoundSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lineup {

/// What a feed says of its sound.
struct FeedFacts {
    double rate = 48000;  ///< Hz
    int inputs = 0;
    std::optional<int> bits;
    std::optional<bool> lossy;
};

/// The last seconds of a feed's sound. Samples are numbered from the feed's first.
class SoundWindow {
public:
    SoundWindow(const FeedFacts& facts, double seconds);

    /// Takes the first `count` samples of each input.
    void Add(std::span<const std::vector<float>> inputs, std::size_t count);

    [[nodiscard]] std::int64_t First() const { return mInputs.front().First(); }
    [[nodiscard]] std::int64_t End() const { return mInputs.front().End(); }

    /// Samples [first, end), which must be there, as a recording of their own. It holds until more is added.
    [[nodiscard]] std::unique_ptr<SoundSource> Stretch(std::int64_t first, std::int64_t end) const;

    /// What is held against what was a period before.
    struct Comparison {
        std::int64_t first = 0;
        std::int64_t end = 0;
        std::int64_t period = 0;
        std::span<const int> inputs;               ///< all, where it is empty
        std::vector<DamagedStretch> passedOver{};  ///< what of it counts for nothing
    };

    /// The first place where one of the inputs no longer is what it was a period before; to a hundredth of a second.
    /// Empty where it is all along, or too little is there.
    [[nodiscard]] std::optional<std::int64_t> FirstChange(const Comparison& comparison) const;

    /// The place from which on it is again what it was a period before. Empty where it never was anything else, or
    /// nothing sounds there that would tell.
    [[nodiscard]] std::optional<std::int64_t> LastChange(const Comparison& comparison) const;

private:
    // A hundredth of a second, of the input that differs most.
    struct Block {
        std::int64_t start = 0;
        double change = 0;  // mean square
        double power = 0;
    };

    [[nodiscard]] std::vector<Block> Compare(const Comparison& comparison) const;
    [[nodiscard]] Block BlockAt(std::int64_t first, std::int64_t count, std::int64_t period,
                                std::span<const int> inputs) const;

    FeedFacts mFacts;
    std::vector<sound::SlidingBuffer<float>> mInputs;
};

}  // namespace lineup
