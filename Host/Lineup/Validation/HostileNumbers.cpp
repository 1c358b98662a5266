#include "Host/Lineup/Validation/HostileNumbers.h"

#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Validation/Requests.h"

#include <array>
#include <bit>
#include <limits>

namespace lineup::validation {

namespace {

using FloatLimits = std::numeric_limits<float>;
using Int64Limits = std::numeric_limits<std::int64_t>;

// 2.5e11 Hz is a tick a sample; 2.7e-8 Hz is where a sample's ticks no longer fit 64 bits.
constexpr std::array kFloats = {0.0F,
                                -0.0F,
                                1.0F,
                                -1.0F,
                                0.5F,
                                100.0F,
                                400.0F,
                                1000.0F,
                                2000.0F,
                                8000.0F,
                                44100.0F,
                                48000.0F,
                                -48000.0F,
                                47952.0F,
                                96000.0F,
                                192000.0F,
                                1e-5F,
                                1e-20F,
                                -1e-20F,
                                2.7e-8F,
                                2.8e-8F,
                                -2.7e-8F,
                                1e9F,
                                2.540160e11F,
                                -2.540160e11F,
                                3e11F,
                                -3e11F,
                                1.3e11F,
                                1e20F,
                                -1e30F,
                                1e30F,
                                FloatLimits::max(),
                                FloatLimits::lowest(),
                                FloatLimits::min(),
                                FloatLimits::denorm_min(),
                                -FloatLimits::denorm_min(),
                                FloatLimits::infinity(),
                                -FloatLimits::infinity(),
                                FloatLimits::quiet_NaN()};

constexpr std::int64_t kLastAt48kHz = Int64Limits::max() / 5292000;  // the last sample before times wrap
constexpr std::array<std::int64_t, 21> kPositions = {0,
                                                     1,
                                                     -1,
                                                     47999,
                                                     132000,
                                                     143999,
                                                     240000,
                                                     -48000,
                                                     std::int64_t{1} << 31,
                                                     std::int64_t{1} << 32,
                                                     -(std::int64_t{1} << 33),
                                                     kLastAt48kHz - 100,
                                                     kLastAt48kHz,
                                                     kLastAt48kHz + 1,
                                                     -kLastAt48kHz - 1,
                                                     std::int64_t{1} << 52,
                                                     std::int64_t{1} << 62,
                                                     Int64Limits::max(),
                                                     Int64Limits::max() - 100,
                                                     Int64Limits::min(),
                                                     Int64Limits::min() + 100};

constexpr std::array<std::uint32_t, 9> kChannelCounts = {0, 1, 2, 3, 6, 7, kMostChannels, 0x80000000, 0xFFFFFFFF};

}  // namespace

std::span<const float> HostileFloats() {
    return kFloats;
}

std::span<const std::int64_t> HostilePositions() {
    return kPositions;
}

float HostileNumbers::Float() {
    constexpr std::uint32_t kQuiet = 0x00400000;  // never the bits of an unwritten sample
    switch (mExamination->Below(4)) {
        case 0:
            return static_cast<float>(mExamination->Below(200000)) + 0.25F;
        case 1:
            return std::bit_cast<float>(static_cast<std::uint32_t>(mExamination->AnyBits() >> 32U) | kQuiet);
        default:
            return kFloats.at(mExamination->Below(kFloats.size()));
    }
}

std::int64_t HostileNumbers::Position() {
    switch (mExamination->Below(3)) {
        case 0:
            return static_cast<std::int64_t>(mExamination->AnyBits());
        case 1:
            return static_cast<std::int64_t>(mExamination->Below(10000000)) - 5000000;
        default:
            return kPositions.at(mExamination->Below(kPositions.size()));
    }
}

BarsAndToneInfo HostileNumbers::Settings() {
    BarsAndToneInfo settings;
    settings.version = static_cast<std::uint32_t>(mExamination->AnyBits() >> 32U);
    settings.sampleRate = Float();
    settings.channelType = static_cast<std::uint32_t>(mExamination->Below(5));
    settings.numChannels = kChannelCounts.at(mExamination->Below(kChannelCounts.size()));
    settings.identifyChannels = static_cast<std::uint32_t>(mExamination->Below(3));
    settings.frequency = Float();
    settings.amplitude = Float();
    settings.identifierFormat = static_cast<IdentifierFormat>(mExamination->Below(6));
    return settings;
}

std::size_t ClipChannels(const BarsAndToneInfo& settings) {
    return settings.numChannels <= kMostChannels ? settings.numChannels : 0;
}

std::size_t ChannelsWritten(const BarsAndToneInfo& settings) {
    if (settings.identifyChannels != 1) {
        return ClipChannels(settings);
    }
    switch (settings.identifierFormat) {
        case EBUStereo1000:
        case EBUStereo400:
            return 2;
        case EBUMultichannel:
        case BLITS5_1:
            return 6;
        default:
            return 0;
    }
}

std::string Text(const BarsAndToneInfo& settings) {
    return fmt::format("settings of {} channels at {} Hz, ident {}/{}, {} Hz at {}", settings.numChannels,
                       settings.sampleRate, settings.identifyChannels,
                       static_cast<std::uint32_t>(settings.identifierFormat), settings.frequency, settings.amplitude);
}

}  // namespace lineup::validation
