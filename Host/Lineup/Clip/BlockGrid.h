#pragma once

#include <lineup/Api.h>

#include <cstdint>

namespace lineup {
inline namespace parts {

/// Cuts a clip's samples into blocks of clip time: as long as the shortest whole number of milliseconds that is a whole
/// number of samples and goes into a tenth of a second, on which the steps of all sequences begin: 1 ms at 48 kHz, 10
/// ms at 44.1 kHz. At a rate without one, such as 11.025 kHz, a block lasts 10 ms and starts with the first sample at
/// or after its time. Audio that is always asked for in these blocks sounds the same wherever a caller cuts it, even
/// where a sequence takes a tone's phase from the start of the request; and short blocks keep tones pure, because a
/// phase drifts within a request and is taken up anew by the next.
class LINEUP_API BlockGrid {
public:
    explicit BlockGrid(float sampleRateHz) noexcept;

    /// From `start` on, up to `end`.
    struct Block {
        std::int64_t start;
        std::int64_t end;
    };

    /// The block that holds sample `position`.
    [[nodiscard]] Block BlockAt(std::int64_t position) const noexcept;

    /// The block that begins where `block`, one of this grid, ends; far quicker than to ask for the block there.
    [[nodiscard]] Block BlockAfter(const Block& block) const noexcept;

    /// No block is longer, in samples.
    [[nodiscard]] std::int64_t LongestBlock() const noexcept;

private:
    // In ticks, or in samples where a block is a whole number of them.
    std::int64_t mSampleLength;
    std::int64_t mBlockLength;
};

}  // namespace parts
}  // namespace lineup
