#include "Host/Lineup/Send/Transport/Tables.h"

#include <algorithm>
#include <span>
#include <vector>

namespace lineup {
inline namespace parts {

namespace {

using SectionBytes = std::vector<std::uint8_t>;

constexpr std::uint16_t kStreamNumber = 1;
constexpr std::uint16_t kProgramme = 1;

void Put16(SectionBytes& bytes, unsigned value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8U));
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFFU));
}

void PutText(SectionBytes& bytes, std::string_view text) {
    bytes.push_back(static_cast<std::uint8_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
}

std::uint32_t SectionCrc(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= std::uint32_t{byte} << 24U;
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc << 1U ^ ((crc & 0x80000000U) != 0 ? 0x04C11DB7U : 0U);
        }
    }
    return crc;
}

// `number` is what the section is about: a transport stream or a programme.
SectionBytes BeginSection(std::uint8_t table, unsigned number) {
    SectionBytes section = {table, 0, 0};
    Put16(section, number);
    section.insert(section.end(), {0xC1, 0, 0});  // version 0, now, section 0 of 0
    return section;
}

TsPacket EndSection(SectionBytes section, std::uint16_t pid, unsigned lengthFlags) {
    constexpr std::size_t kCrcBytes = 4;
    constexpr std::size_t kNotCounted = 3;
    const auto length = static_cast<unsigned>(section.size() + kCrcBytes - kNotCounted);
    section[1] = static_cast<std::uint8_t>(lengthFlags | length >> 8U);
    section[2] = static_cast<std::uint8_t>(length & 0xFFU);
    const std::uint32_t crc = SectionCrc(section);
    Put16(section, crc >> 16U);
    Put16(section, crc & 0xFFFFU);
    TsPacket packet;
    packet.fill(0xFF);
    const SectionBytes head = {0x47, static_cast<std::uint8_t>(0x40U | pid >> 8U),
                               static_cast<std::uint8_t>(pid & 0xFFU), 0x10, 0};  // the section begins at once
    std::ranges::copy(section, std::ranges::copy(head, packet.begin()).out);
    return packet;
}

constexpr unsigned kMpegSection = 0xB0;
constexpr unsigned kDvbSection = 0xF0;

void PutStream(SectionBytes& section, const TableEntry& entry, std::uint16_t pid) {
    section.push_back(entry.type);
    Put16(section, 0xE000U | pid);
    SectionBytes descriptors;
    if (!entry.registration.empty()) {
        descriptors.push_back(0x05);
        PutText(descriptors, entry.registration);
    }
    Put16(section, 0xF000U | static_cast<unsigned>(descriptors.size()));
    section.insert(section.end(), descriptors.begin(), descriptors.end());
}

TsPacket MakePat() {
    SectionBytes section = BeginSection(0x00, kStreamNumber);
    Put16(section, kProgramme);
    Put16(section, 0xE000U | Pid::kPmt);
    return EndSection(std::move(section), Pid::kPat, kMpegSection);
}

TsPacket MakePmt(const std::optional<TableEntry>& picture, const std::optional<TableEntry>& sound) {
    SectionBytes section = BeginSection(0x02, kProgramme);
    Put16(section, 0xE000U | (picture ? Pid::kPicture : Pid::kSound));
    Put16(section, 0xF000U);
    if (picture) {
        PutStream(section, *picture, Pid::kPicture);
    }
    if (sound) {
        PutStream(section, *sound, Pid::kSound);
    }
    return EndSection(std::move(section), Pid::kPmt, kMpegSection);
}

TsPacket MakeSdt() {
    constexpr std::string_view kProvider = "lineup";
    constexpr std::string_view kService = "Bars and Tone";
    SectionBytes section = BeginSection(0x42, kStreamNumber);
    Put16(section, kStreamNumber);  // the original network
    section.push_back(0xFF);
    Put16(section, kProgramme);
    section.push_back(0xFC);  // no guide
    SectionBytes service = {0x01};
    PutText(service, kProvider);
    PutText(service, kService);
    Put16(section, 0x8000U | static_cast<unsigned>(service.size() + 2));  // running, in the clear
    section.push_back(0x48);
    section.push_back(static_cast<std::uint8_t>(service.size()));
    section.insert(section.end(), service.begin(), service.end());
    return EndSection(std::move(section), Pid::kSdt, kDvbSection);
}

}  // namespace

ProgrammeTables MakeTables(const std::optional<TableEntry>& picture, const std::optional<TableEntry>& sound) {
    return {.pat = MakePat(), .pmt = MakePmt(picture, sound), .sdt = MakeSdt()};
}

}  // namespace parts
}  // namespace lineup
