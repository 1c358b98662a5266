#include "Tests/Host/Lineup/Send/TransportReader.h"

#include <fmt/format.h>

namespace test {

namespace {

constexpr std::size_t kPacket = 188;
constexpr int kNullPid = 0x1FFF;
constexpr int kPmtPid = 0x1000;

std::uint32_t Number(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes) {
        number = number << 8U | byte;
    }
    return number;
}

// By the remainder of the whole section, its checksum included: 0.
std::uint32_t Remainder(std::span<const std::uint8_t> section) {
    std::uint32_t rest = 0xFFFFFFFF;
    for (const std::uint8_t byte : section) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool one = ((rest >> 31U) ^ (std::uint32_t{byte} >> static_cast<unsigned>(bit) & 1U)) != 0;
            rest = rest << 1U ^ (one ? 0x04C11DB7U : 0U);
        }
    }
    return rest;
}

}  // namespace

void TransportReader::Take(std::span<const std::uint8_t> bytes) {
    for (; bytes.size() >= kPacket; bytes = bytes.subspan(kPacket)) {
        ReadPacket(bytes.first(kPacket));
        ++stream.packets;
    }
}

void TransportReader::End() {
    for (auto& [pid, open] : mOpen) {
        if (open.pes.size() == Number(std::span(open.pes).subspan(4, 2)) + 6) {
            Close(pid, open);
        }
    }
}

void TransportReader::Complain(const std::string& what) {
    stream.errors.push_back(fmt::format("packet {}: {}", stream.packets, what));
}

void TransportReader::ReadPacket(std::span<const std::uint8_t> packet) {
    const int pid = static_cast<int>(Number(packet.subspan(1, 2)) & 0x1FFFU);
    if (packet[0] != 0x47 || (packet[1] & 0x80U) != 0) {
        Complain("no packet");
        return;
    }
    if (pid == kNullPid) {
        return;
    }
    const bool hasAdaptation = (packet[3] & 0x20U) != 0;
    const bool hasPayload = (packet[3] & 0x10U) != 0;
    CheckCounter(pid, packet[3] & 0x0FU, hasPayload);
    std::size_t at = 4;
    bool isEntry = false;
    if (hasAdaptation) {
        const std::size_t length = packet[4];
        if (length > (hasPayload ? 182U : 183U) || (!hasPayload && length != 183)) {
            Complain("an adaptation field of a wrong length");
            return;
        }
        isEntry = length > 0 && (packet[5] & 0x40U) != 0;
        if (length > 6 && (packet[5] & 0x10U) != 0) {
            ReadClock(packet.subspan(6, 6));
        }
        at += 1 + length;
    }
    if (hasPayload) {
        ReadPayload(pid, (packet[1] & 0x40U) != 0, isEntry, packet.subspan(at));
    }
}

void TransportReader::CheckCounter(int pid, unsigned counter, bool hasPayload) {
    const auto last = mCounters.find(pid);
    if (last != mCounters.end() && counter != ((last->second + (hasPayload ? 1U : 0U)) & 0x0FU)) {
        Complain(fmt::format("the continuity counter of PID {} is {} behind {}", pid, counter, last->second));
    }
    mCounters[pid] = counter;
}

void TransportReader::ReadClock(std::span<const std::uint8_t> field) {
    const std::int64_t base = std::int64_t{Number(field.first(4))} << 1U | field[4] >> 7U;
    const std::int64_t extension = (field[4] & 1) << 8 | field[5];
    stream.clocks.push_back({stream.packets, base * 300 + extension});
}

void TransportReader::ReadPayload(int pid, bool begins, bool isEntry, std::span<const std::uint8_t> payload) {
    if (pid < 0x20 || pid == kPmtPid) {
        ReadSection(pid, payload);
        return;
    }
    OpenUnit& open = mOpen[pid];
    if (begins) {
        if (!open.pes.empty()) {
            Close(pid, open);
        }
        open = {};
        open.unit.isEntry = isEntry;
    } else if (open.pes.empty()) {
        return;  // before the first begin
    }
    open.pes.insert(open.pes.end(), payload.begin(), payload.end());
    open.unit.packetOfEnd = stream.packets;
}

void TransportReader::Close(int pid, OpenUnit& open) {
    const std::span pes(open.pes);
    const std::size_t length = Number(pes.subspan(4, 2));
    if (Number(pes.first(3)) != 1 || (length != 0 && length + 6 != pes.size()) || (pes[7] & 0xC0U) != 0x80U) {
        Complain(fmt::format("PID {} has no proper access unit", pid));
        return;
    }
    const auto bits = [&](std::size_t at, unsigned shift) { return std::int64_t{pes[at]} >> 1U << shift; };
    open.unit.pts = (std::int64_t{pes[9]} >> 1U & 7) << 30U | std::int64_t{pes[10]} << 22U | bits(11, 15) |
                    std::int64_t{pes[12]} << 7U | bits(13, 0);
    const auto content = pes.subspan(std::size_t{9} + pes[8]);
    open.unit.bytes.assign(content.begin(), content.end());
    stream.units[pid].push_back(std::move(open.unit));
}

void TransportReader::ReadSection(int pid, std::span<const std::uint8_t> payload) {
    const auto section = payload.subspan(std::size_t{1} + payload[0]);
    const std::size_t length = 3 + (Number(section.subspan(1, 2)) & 0x0FFFU);
    if (Remainder(section.first(length)) != 0) {
        Complain(fmt::format("the table of PID {} has a wrong checksum", pid));
    }
    stream.tablePackets[pid].push_back(stream.packets);
    if (pid == kPmtPid) {
        for (std::size_t at = 12; at + 4 < length;) {
            stream.types[static_cast<int>(Number(section.subspan(at + 1, 2)) & 0x1FFFU)] = section[at];
            at += 5 + (Number(section.subspan(at + 3, 2)) & 0x0FFFU);
        }
    }
}

ReceivedStream ReadTransport(std::span<const std::uint8_t> bytes) {
    TransportReader reader;
    reader.Take(bytes);
    reader.End();
    return std::move(reader.stream);
}

}  // namespace test
