#pragma once

#include <lineup/Api.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The packets of an MPEG-2 transport stream (ISO/IEC 13818-1).
namespace lineup {
inline namespace parts {

inline constexpr std::size_t kTsBytes = 188;
inline constexpr std::size_t kTsPayload = 184;
inline constexpr std::int64_t kTsBits = 8 * kTsBytes;

/// Both clocks start anew where 33 bits of 90 kHz end: after 26 h 30 min 43.7 s.
inline constexpr std::int64_t kPtsHz = 90'000;
inline constexpr std::int64_t kPcrHz = 27'000'000;
inline constexpr std::int64_t kPtsWrap = std::int64_t{1} << 33U;

using TsPacket = std::array<std::uint8_t, kTsBytes>;

/// Which packets belong together.
struct Pid {
    static constexpr std::uint16_t kPat = 0x0000;
    static constexpr std::uint16_t kSdt = 0x0011;
    static constexpr std::uint16_t kPicture = 0x0100;
    static constexpr std::uint16_t kSound = 0x0101;
    static constexpr std::uint16_t kPmt = 0x1000;
    static constexpr std::uint16_t kNull = 0x1FFF;
};

/// A packet that carries nothing: it keeps the bit rate constant.
[[nodiscard]] LINEUP_API const TsPacket& NullPacket();

/// A packet that carries the clock alone, `pcr` in 27 MHz from any start. Its counter repeats that of the last packet
/// of its PID that carried something.
[[nodiscard]] LINEUP_API TsPacket ClockPacket(std::uint16_t pid, std::int64_t lastCount, std::int64_t pcr);

/// Sets the continuity counter to that of the packet of its PID that has `index` before it.
inline void SetCount(std::span<std::uint8_t, kTsBytes> packet, std::int64_t index) {
    packet[3] = static_cast<std::uint8_t>((packet[3] & 0xF0U) | (static_cast<std::uint64_t>(index) & 0x0FU));
}

/// One access unit on its way: packets of one PID, their counters still 0.
struct PesPackets {
    std::vector<TsPacket> packets;
    std::size_t ptsAt = 0;  ///< where the first packet has its time stamp
};

/// How an elementary stream is wrapped.
struct PesKind {
    std::uint16_t pid = 0;
    std::uint8_t streamId = 0;
    bool bounded = true;  ///< says its length; pictures may be longer than its 16 bits
};

/// The packets that `bytes` of an access unit need at least. `isEntry`: a decoder can begin with it, which is said.
[[nodiscard]] LINEUP_API std::size_t PacketsFor(std::size_t bytes, bool isEntry);

/// Wraps an access unit into exactly `count` packets, as many as PacketsFor at least, each filled to the same part.
[[nodiscard]] LINEUP_API PesPackets Packetise(std::span<const std::uint8_t> unit, const PesKind& kind,
                                              std::size_t count, bool isEntry);

/// Sets the time at which an access unit is shown or heard, in 90 kHz from any start.
LINEUP_API void SetPts(std::span<std::uint8_t> at, std::int64_t pts);

}  // namespace parts
}  // namespace lineup
