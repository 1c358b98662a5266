#pragma once

#include <lineup/Api.h>

#include <cstdint>

namespace lineup {
inline namespace parts {

/// Cuts a clip's samples into blocks that start at multiples of 0.1 s of clip time: each block starts
/// with the first sample at or after its multiple (every 4800 samples at 48 kHz). Audio that is always
/// asked for in these blocks sounds the same wherever a caller cuts it, even where a sequence takes a
/// tone's phase from the start of the request.
class LINEUP_API BlockGrid {
public:
    explicit BlockGrid(float sampleRateHz) noexcept;

    /// The start of the block that holds sample `position`.
    [[nodiscard]] std::int64_t BlockStart(std::int64_t position) const noexcept;

    /// The start of the block after the one that holds sample `position`.
    [[nodiscard]] std::int64_t NextBlockStart(std::int64_t position) const noexcept;

    /// No block is longer, in samples.
    [[nodiscard]] std::int64_t LongestBlock() const noexcept;

private:
    std::int64_t mTicksPerSample;
};

}  // namespace parts
}  // namespace lineup
