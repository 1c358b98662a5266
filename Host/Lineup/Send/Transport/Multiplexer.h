#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/Transport/PictureLane.h"
#include "Host/Lineup/Send/Transport/SoundLane.h"
#include "Host/Lineup/Send/Transport/StreamTimes.h"
#include "Host/Lineup/Send/Transport/Tables.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lineup {
inline namespace parts {

/// Picture, sound, tables, clock and stuffing as one transport stream of constant bit rate. Any slot can be made at any
/// time, and is the same each time.
class LINEUP_API Multiplexer {
public:
    /// Picture or sound may be null, not both; the picture is scheduled.
    Multiplexer(const StreamTimes& times, const ProgrammeTables& tables, const PictureLane* picture, SoundLane* sound);

    /// The packets that a slot needs for all but the picture.
    [[nodiscard]] static std::int64_t PacketsBesidesPicture(const StreamTimes& times, const SoundLane* sound);

    /// What lies before this clip time is left out: the stream begins with it.
    void BeginAt(std::int64_t units, std::int64_t unitsPerSecond) noexcept { mBegin = {units, unitsPerSecond}; }

    /// And what begins at this one or later.
    void EndAt(std::int64_t units, std::int64_t unitsPerSecond) noexcept { mEnd = {units, unitsPerSecond}; }

    /// Puts all packets of slot `slot` behind `bytes`.
    void AppendSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes);

    /// The time by which what is shown lies behind the clock of its packets, in slots.
    [[nodiscard]] std::int64_t DelaySlots() const noexcept { return mDelay; }

private:
    struct Moment {
        std::int64_t units;
        std::int64_t perSecond;
    };
    std::int64_t AppendTables(std::int64_t slot, std::vector<std::uint8_t>& bytes);
    void AddPicture(std::int64_t slot);
    void AddSound(std::int64_t slot);
    [[nodiscard]] bool IsLeftOut(std::int64_t units, std::int64_t unitsPerSecond) const;
    [[nodiscard]] std::int64_t FirstPictureAt(const Moment& moment) const;
    [[nodiscard]] std::int64_t FirstSoundAt(const Moment& moment) const;
    [[nodiscard]] TsPacket ClockOf(std::int64_t slot) const;
    void Add(const TsPacket& packet, Wide place);

    struct Item {
        std::int64_t place;  // among those of the slot
        TsPacket packet;
    };

    StreamTimes mTimes;
    ProgrammeTables mTables;
    const PictureLane* mPicture;
    SoundLane* mSound;
    std::int64_t mDelay;
    std::int64_t mTableSlots;
    std::int64_t mNameSlots;
    std::optional<Moment> mBegin;
    std::optional<Moment> mEnd;
    std::vector<Item> mItems;  // of the slot that is being made
};

}  // namespace parts
}  // namespace lineup
