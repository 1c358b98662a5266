#include "Host/Lineup/Send/Flv/AvcUnits.h"

#include <lineup/Error.h>

#include <algorithm>
#include <array>

namespace lineup {
inline namespace parts {

namespace {

using NalUnit = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 3> kStartCode = {0, 0, 1};
constexpr unsigned kEntrySlice = 5;
constexpr unsigned kSequenceSet = 7;
constexpr unsigned kPictureSet = 8;
constexpr unsigned kDelimiter = 9;

unsigned KindOf(NalUnit unit) {
    return unit.front() & 0x1FU;
}

// A start code's further zero byte belongs to no unit, and no unit ends with one.
std::vector<NalUnit> SplitUnits(std::span<const std::uint8_t> bytes) {
    std::vector<NalUnit> units;
    auto begin = std::ranges::search(bytes, kStartCode).end();
    while (begin != bytes.end()) {
        const auto next = std::ranges::search(begin, bytes.end(), kStartCode.begin(), kStartCode.end());
        auto end = next.begin();
        while (end != begin && *(end - 1) == 0) {
            --end;
        }
        if (end != begin) {
            units.emplace_back(begin, end);
        }
        begin = next.end();
    }
    return units;
}

void PutSized(std::vector<std::uint8_t>& bytes, NalUnit unit, unsigned sizeBytes) {
    for (unsigned shift = 8 * sizeBytes; shift > 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(unit.size() >> (shift - 8)));
    }
    bytes.insert(bytes.end(), unit.begin(), unit.end());
}

std::vector<std::uint8_t> MakeConfig(NalUnit sequence, NalUnit picture) {
    std::vector<std::uint8_t> config = {1,    sequence[1], sequence[2], sequence[3],  // profile, its limits, level
                                        0xFF,                                         // lengths of four bytes
                                        0xE1};                                        // one sequence set
    PutSized(config, sequence, 2);
    config.push_back(1);
    PutSized(config, picture, 2);
    constexpr std::uint8_t kHigh = 100;
    if (sequence[1] >= kHigh) {  // of which more has to be said: 4:2:0, 8 bits, no extension
        config.insert(config.end(), {0xFD, 0xF8, 0xF8, 0});
    }
    return config;
}

}  // namespace

AvcGroup ToAvc(std::span<const std::vector<std::uint8_t>> units) {
    AvcGroup group;
    NalUnit sequence;
    NalUnit picture;
    for (const std::vector<std::uint8_t>& unit : units) {
        AvcUnit& made = group.units.emplace_back();
        for (const NalUnit nal : SplitUnits(unit)) {
            if (KindOf(nal) == kSequenceSet) {
                sequence = nal;
            } else if (KindOf(nal) == kPictureSet) {
                picture = nal;
            } else if (KindOf(nal) != kDelimiter) {
                PutSized(made.bytes, nal, 4);
                made.isEntry = made.isEntry || KindOf(nal) == kEntrySlice;
            }
        }
    }
    if (sequence.size() < 4 || picture.empty()) {
        throw Error("cannot send the picture: its encoder gave no parameter sets");
    }
    group.config = MakeConfig(sequence, picture);
    return group;
}

}  // namespace parts
}  // namespace lineup
