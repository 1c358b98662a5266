#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/Transport/TsPacket.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lineup {
inline namespace parts {

/// The picture's packets: one group of coded pictures, wrapped once, over and over.
class LINEUP_API PictureLane {
public:
    /// `group`: access units that follow each other for ever, the first again behind the last; a decoder can begin
    /// with the first. `slotsPerFrame` as StreamTimes has it.
    PictureLane(const std::vector<std::vector<std::uint8_t>>& group, int slotsPerFrame);

    /// The fewest packets a slot with which every picture has arrived `slots` slots after its turn came.
    [[nodiscard]] std::int64_t PacketsWithin(std::int64_t slots) const;

    /// From here on at most `perSlot` packets are sent in a slot, and none before its picture's turn. False when that
    /// is too few for the group.
    [[nodiscard]] bool Schedule(std::int64_t perSlot);

    /// Of the schedule: the slots from a picture's turn until all of it has arrived, the longest.
    [[nodiscard]] std::int64_t DelaySlots() const noexcept { return mDelay; }

    /// As many packets as the largest picture needs in each slot, to arrive within its own frame.
    [[nodiscard]] std::int64_t MostPerSlot() const;

    /// The packets before slot `slot`, in the whole stream.
    [[nodiscard]] std::int64_t CountBefore(std::int64_t slot) const;

    /// The packets before those of frame `frame`.
    [[nodiscard]] std::int64_t CountBeforeFrame(std::int64_t frame) const;

    /// Packet `index` of the stream. Its time stamp is still 0.
    struct Piece {
        const TsPacket* packet = nullptr;
        std::int64_t frame = 0;
        std::size_t ptsAt = 0;  ///< 0: it has none
    };
    [[nodiscard]] Piece At(std::int64_t index) const;

private:
    struct Kept {
        TsPacket packet;
        std::int64_t frame;  // of the group
        std::size_t ptsAt;
    };

    int mSlotsPerFrame;
    std::int64_t mFrames;
    std::vector<Kept> mKept;
    std::vector<std::int64_t> mSizes;   // packets of each frame
    std::vector<std::int64_t> mBefore;  // packets before each slot of the group
    std::int64_t mDelay = 0;
};

}  // namespace parts
}  // namespace lineup
