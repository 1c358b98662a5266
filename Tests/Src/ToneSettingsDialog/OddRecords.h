#pragma once

#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

namespace test {

/// Records that nobody would make on purpose and that a host may hand over all the same.
inline std::vector<BarsAndToneInfo> OddRecords() {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const auto fromBits = [](std::uint32_t bits) { return std::bit_cast<float>(bits); };
    std::vector<BarsAndToneInfo> records;

    const std::array<float, 10> numbers = {0.0F,
                                           -0.0F,
                                           std::numeric_limits<float>::denorm_min(),
                                           -1.0F,
                                           0.1F,
                                           std::numeric_limits<float>::max(),
                                           kInfinity,
                                           -kInfinity,
                                           fromBits(0x7FC00001U),   // quiet NaN with a payload
                                           fromBits(0xFFA00003U)};  // signalling NaN, negative
    for (const float number : numbers) {
        BarsAndToneInfo amplitude;
        amplitude.amplitude = number;
        BarsAndToneInfo frequency;
        frequency.frequency = number;
        BarsAndToneInfo rate;
        rate.sampleRate = number;
        records.insert(records.end(), {amplitude, frequency, rate});
    }
    for (const std::uint32_t number : {0U, 1U, 2U, 3U, 4U, 7U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        BarsAndToneInfo record;
        record.version = number;
        records.push_back(record);
        record.channelType = number;
        records.push_back(record);
        record.numChannels = number;
        records.push_back(record);
        record.identifyChannels = number;
        records.push_back(record);
        record.identifierFormat = std::bit_cast<IdentifierFormat>(number);
        records.push_back(record);
    }
    for (const std::uint8_t byte : std::array<std::uint8_t, 4>{0x00, 0x55, 0xCC, 0xFF}) {
        std::array<std::uint8_t, sizeof(BarsAndToneInfo)> bytes{};
        bytes.fill(byte);
        records.push_back(std::bit_cast<BarsAndToneInfo>(bytes));
    }
    return records;
}

}  // namespace test
