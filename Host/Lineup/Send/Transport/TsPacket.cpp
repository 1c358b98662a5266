#include "Host/Lineup/Send/Transport/TsPacket.h"

#include "Host/Lineup/Send/Transport/WideMath.h"

#include <algorithm>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::uint8_t kSync = 0x47;
constexpr std::size_t kHead = kTsBytes - kTsPayload;
constexpr std::size_t kPesHead = 14;  // with a time stamp and nothing else
constexpr std::size_t kPtsInPes = 9;
constexpr std::size_t kEntryField = 2;  // an adaptation field of flags alone
constexpr unsigned kHasPayload = 0x10;
constexpr unsigned kHasAdaptation = 0x20;
constexpr std::uint8_t kEntryFlag = 0x40;
constexpr std::uint8_t kClockFlag = 0x10;

void PutHead(TsPacket& packet, std::uint16_t pid, bool begins, unsigned control) {
    packet[0] = kSync;
    packet[1] = static_cast<std::uint8_t>((begins ? 0x40U : 0U) | pid >> 8U);
    packet[2] = static_cast<std::uint8_t>(pid & 0xFFU);
    packet[3] = static_cast<std::uint8_t>(control);
}

// An adaptation field of `bytes` bytes in all: its length, flags where there is room for them, and stuffing.
void PutAdaptation(TsPacket& packet, std::size_t bytes, std::uint8_t flags) {
    packet[3] |= kHasAdaptation;
    packet.at(kHead) = static_cast<std::uint8_t>(bytes - 1);
    if (bytes > 1) {
        packet.at(kHead + 1) = flags;
    }
}

std::vector<std::uint8_t> PesOf(std::span<const std::uint8_t> unit, const PesKind& kind, std::size_t atLeast) {
    constexpr std::size_t kPrefix = 6;  // that the length does not count
    const std::size_t stuffing = atLeast > kPesHead + unit.size() ? atLeast - kPesHead - unit.size() : 0;
    const std::size_t length = kind.bounded ? kPesHead - kPrefix + stuffing + unit.size() : 0;
    std::vector<std::uint8_t> pes = {0x00,
                                     0x00,
                                     0x01,
                                     kind.streamId,
                                     static_cast<std::uint8_t>(length >> 8U),
                                     static_cast<std::uint8_t>(length & 0xFFU),
                                     0x84,  // the unit begins with it
                                     0x80,  // a time stamp for showing alone
                                     static_cast<std::uint8_t>(5 + stuffing)};
    pes.resize(kPesHead);
    pes.resize(kPesHead + stuffing, 0xFF);
    SetPts(std::span(pes).subspan(kPtsInPes), 0);
    pes.insert(pes.end(), unit.begin(), unit.end());
    return pes;
}

}  // namespace

const TsPacket& NullPacket() {
    static const TsPacket packet = [] {
        TsPacket made;
        made.fill(0xFF);
        PutHead(made, Pid::kNull, false, kHasPayload);
        return made;
    }();
    return packet;
}

TsPacket ClockPacket(std::uint16_t pid, std::int64_t lastCount, std::int64_t pcr) {
    constexpr std::int64_t kRatio = kPcrHz / kPtsHz;
    TsPacket packet;
    packet.fill(0xFF);
    PutHead(packet, pid, false, 0);
    PutAdaptation(packet, kTsPayload, kClockFlag);
    const auto base = static_cast<std::uint64_t>(Modulo(FloorDivided(pcr, kRatio), kPtsWrap));
    const auto extension = static_cast<std::uint64_t>(Modulo(pcr, kRatio));
    const std::uint64_t bits = base << 15U | 0x7E00U | extension;
    for (unsigned i = 0; i < 6; ++i) {
        packet.at(kHead + 2 + i) = static_cast<std::uint8_t>(bits >> (40U - 8U * i));
    }
    SetCount(packet, lastCount);
    return packet;
}

std::size_t PacketsFor(std::size_t bytes, bool isEntry) {
    return (kPesHead + bytes + (isEntry ? kEntryField : 0) + kTsPayload - 1) / kTsPayload;
}

PesPackets Packetise(std::span<const std::uint8_t> unit, const PesKind& kind, std::size_t count, bool isEntry) {
    const std::size_t field = isEntry ? kEntryField : 0;
    // Each packet carries something, and the first the whole head.
    const std::vector<std::uint8_t> pes = PesOf(unit, kind, kPesHead + count - 1);
    const std::size_t first = std::max((pes.size() + field) / count, kPesHead + field) - field;
    const auto endOf = [&](std::size_t i) { return i == 0 ? first : first + (pes.size() - first) * i / (count - 1); };
    PesPackets made;
    made.packets.resize(count);
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        TsPacket& packet = made.packets[i];
        packet.fill(0xFF);
        PutHead(packet, kind.pid, i == 0, kHasPayload);
        const std::size_t payload = endOf(i) - at;
        if (payload < kTsPayload) {
            PutAdaptation(packet, kTsPayload - payload, i == 0 && isEntry ? kEntryFlag : std::uint8_t{0});
        }
        std::copy_n(pes.begin() + static_cast<std::ptrdiff_t>(at), payload,
                    packet.end() - static_cast<std::ptrdiff_t>(payload));
        if (i == 0) {
            made.ptsAt = kTsBytes - payload + kPtsInPes;
        }
        at += payload;
    }
    return made;
}

void SetPts(std::span<std::uint8_t> at, std::int64_t pts) {
    const auto bits = static_cast<std::uint64_t>(Modulo(pts, kPtsWrap));
    at[0] = static_cast<std::uint8_t>(0x21U | (bits >> 29U & 0x0EU));
    at[1] = static_cast<std::uint8_t>(bits >> 22U);
    at[2] = static_cast<std::uint8_t>(0x01U | bits >> 14U);
    at[3] = static_cast<std::uint8_t>(bits >> 7U);
    at[4] = static_cast<std::uint8_t>(0x01U | bits << 1U);
}

}  // namespace parts
}  // namespace lineup
