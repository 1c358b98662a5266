#pragma once

#include "Host/Lineup/Check/Reader/DecodedPicture.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <vector>

namespace lineup::picture {

/// Frames of a recording against one of them, in which the card was found: a card stands still. Memory has a limit.
class FrameSeries {
public:
    static constexpr int kColumns = 32;
    static constexpr int kRows = 18;
    static constexpr std::size_t kBlocks = std::size_t{kColumns} * kRows;

    /// A frame that differs.
    struct Change {
        double seconds = 0;
        std::bitset<kBlocks> blocks;
        bool isDamaged = false;  ///< the decoder says so
        bool isBlack = false;
        bool isSmall = false;  ///< of another size
    };

    /// Frames from this one on are held against it.
    void SetReference(const DecodedPicture& picture);

    void Add(const DecodedPicture& picture);

    /// How a frame differs from the reference; empty where it does not, or without a reference.
    [[nodiscard]] std::optional<Change> Differs(const DecodedPicture& picture) const;

    [[nodiscard]] int Frames() const noexcept { return mFrames; }

    /// The frames that differ somewhere where most do not, up to the last that does not: what comes behind it is no
    /// longer the card.
    [[nodiscard]] std::vector<Change> Changes() const;

private:
    std::optional<std::array<std::array<float, kBlocks>, 3>> mReference;
    decoding::Frame mHead{};
    int mFrames = 0;
    double mLastAlike = 0;
    std::vector<Change> mChanges;
};

}  // namespace lineup::picture
