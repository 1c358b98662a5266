#include "Host/Lineup/Validation/Probes/HostileNumbers.h"

#include <bit>
#include <cstring>

namespace lineup::validation {

float HostileNumbers::Float() {
    constexpr std::uint32_t kQuiet = 0x00400000;  // the NaN of an unwritten sample is a signalling one
    switch (mRandom->Below(4)) {
        case 0:
            return static_cast<float>(mRandom->Below(200000)) + 0.25F;
        case 1:
            return std::bit_cast<float>(static_cast<std::uint32_t>(mRandom->AnyBits() >> 32U) | kQuiet);
        default:
            return kHostileFloats.at(mRandom->Below(kHostileFloats.size()));
    }
}

std::int64_t HostileNumbers::Position() {
    switch (mRandom->Below(3)) {
        case 0:
            return static_cast<std::int64_t>(mRandom->AnyBits());
        case 1:
            return static_cast<std::int64_t>(mRandom->Below(10000000)) - 5000000;
        default:
            return kHostilePositions.at(mRandom->Below(kHostilePositions.size()));
    }
}

std::int32_t HostileNumbers::Count() {
    return static_cast<std::int32_t>(mRandom->Below(16) == 0 ? mRandom->Below(3001) : mRandom->Below(64));
}

BarsAndToneInfo HostileNumbers::Settings() {
    BarsAndToneInfo settings;
    settings.version = static_cast<std::uint32_t>(mRandom->AnyBits() >> 32U);
    settings.sampleRate = Float();
    settings.channelType = static_cast<std::uint32_t>(mRandom->Below(5));
    settings.numChannels = kHostileChannelCounts.at(mRandom->Below(kHostileChannelCounts.size()));
    settings.identifyChannels = static_cast<std::uint32_t>(mRandom->Below(3));
    settings.frequency = Float();
    settings.amplitude = Float();
    settings.identifierFormat = static_cast<IdentifierFormat>(mRandom->Below(6));
    return settings;
}

void HostileNumbers::Spoil(std::span<std::uint8_t> record) {
    constexpr std::size_t kWord = sizeof(std::uint32_t);
    for (std::uint64_t times = 1 + mRandom->Below(4); times > 0 && !record.empty(); --times) {
        const std::size_t words = record.size() / kWord;
        const std::uint64_t kind = words > 0 ? mRandom->Below(3) : 0;
        if (kind == 0) {
            record[mRandom->Below(record.size())] = static_cast<std::uint8_t>(mRandom->Below(256));
            continue;
        }
        const std::uint32_t word = kind == 1 ? std::bit_cast<std::uint32_t>(Float())
                                             : kHostileChannelCounts.at(mRandom->Below(kHostileChannelCounts.size()));
        std::memcpy(record.data() + mRandom->Below(words) * kWord, &word, kWord);
    }
}

}  // namespace lineup::validation
