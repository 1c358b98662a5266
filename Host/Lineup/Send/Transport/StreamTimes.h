#pragma once

#include <lineup/Api.h>
#include <lineup/Rational.h>
#include "Host/Lineup/Send/Transport/TsPacket.h"
#include "Host/Lineup/Send/Transport/WideMath.h"

#include <cstdint>

namespace lineup {
inline namespace parts {

/// When each packet of a transport stream of constant bit rate leaves. The stream is cut into slots, whole parts of
/// a frame of the picture; slot 0 begins at clip time 0, as packet 0 does. Everything follows from the number of a
/// slot or packet alone: whoever begins in the middle sends what one sends who began long ago.
class LINEUP_API StreamTimes {
public:
    /// A slot is no longer than this, so that a clock packet a slot is what receivers need.
    static constexpr std::int64_t kLongestSlotMs = 25;

    StreamTimes(Rational frameRate, std::int64_t bitsPerSecond);

    [[nodiscard]] int SlotsPerFrame() const noexcept { return mSlotsPerFrame; }
    [[nodiscard]] std::int64_t BitsPerSecond() const noexcept { return mBitRate; }

    /// The packets before slot `slot`.
    [[nodiscard]] std::int64_t PacketsBefore(std::int64_t slot) const noexcept;

    /// The least number of packets that a slot has.
    [[nodiscard]] std::int64_t LeastPackets() const noexcept;

    /// The clock of a packet that leaves at its time, in 27 MHz.
    [[nodiscard]] std::int64_t PcrOf(std::int64_t packet) const noexcept;

    /// The time of a packet since packet 0, in ns.
    [[nodiscard]] std::int64_t NsOf(std::int64_t packet) const noexcept;

    /// The begin of a slot in units of `unitsPerSecond`, rounded down or up.
    [[nodiscard]] std::int64_t BeginDown(std::int64_t slot, std::int64_t unitsPerSecond) const noexcept;
    [[nodiscard]] std::int64_t BeginUp(std::int64_t slot, std::int64_t unitsPerSecond) const noexcept;

    /// The slot that holds a time.
    [[nodiscard]] std::int64_t SlotAt(std::int64_t units, std::int64_t unitsPerSecond) const noexcept;

    /// The bit rate at which every slot has `packets` packets at least.
    [[nodiscard]] static std::int64_t BitRateFor(Rational frameRate, std::int64_t packets);

private:
    int mSlotsPerFrame;
    std::int64_t mSlotNum;  // slots a second
    std::int64_t mSlotDen;
    std::int64_t mBitRate;
};

}  // namespace parts
}  // namespace lineup
