#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The settings of a clip, as the plug-in and its hosts persist them.
namespace lineup {

/// The channel-identification sequences. A stored value above the last one plays nothing.
enum IdentifierFormat : std::uint32_t {
    EBUStereo1000 = 0,    ///< EBU stereo ident at 1000 Hz
    EBUStereo400 = 1,     ///< EBU stereo ident at 400 Hz
    EBUMultichannel = 2,  ///< EBU multichannel 5.1 ident
    BLITS5_1 = 3,         ///< BLITS 5.1 ident
};

/// Values of BarsAndToneInfo::channelType.
inline constexpr std::uint32_t kChannelTypeMono = 1;
inline constexpr std::uint32_t kChannelTypeStereo = 2;
inline constexpr std::uint32_t kChannelType51 = 3;

/// The channel type that goes with a channel count; mono for a count that no layout has.
constexpr std::uint32_t ChannelTypeFor(std::uint32_t numChannels) noexcept {
    switch (numChannels) {
        case 6:
            return kChannelType51;
        case 2:
            return kChannelTypeStereo;
        default:
            return kChannelTypeMono;
    }
}

/// Everything that makes one bars-and-tone clip differ from another. Hosts persist it byte for byte,
/// so order and widths are fixed; the initialisers are the default clip.
struct BarsAndToneInfo {
    std::uint32_t version = 1;                          ///< copied along, never examined
    float sampleRate = 48000.0F;                        ///< Hz
    std::uint32_t channelType = kChannelTypeStereo;     ///< follows from numChannels
    std::uint32_t numChannels = 2;                      ///< 1, 2 or 6
    std::uint32_t identifyChannels = 0;                 ///< 1: identification sequence; else steady tone
    float frequency = 1000.0F;                          ///< steady tone, Hz
    float amplitude = 0.25F;                            ///< steady tone, linear gain (-12.04 dBFS)
    IdentifierFormat identifierFormat = EBUStereo1000;  ///< which sequence when identifyChannels is 1
};

static_assert(sizeof(BarsAndToneInfo) == 32);
static_assert(std::is_trivially_copyable_v<BarsAndToneInfo>);
static_assert(offsetof(BarsAndToneInfo, version) == 0);
static_assert(offsetof(BarsAndToneInfo, sampleRate) == 4);
static_assert(offsetof(BarsAndToneInfo, channelType) == 8);
static_assert(offsetof(BarsAndToneInfo, numChannels) == 12);
static_assert(offsetof(BarsAndToneInfo, identifyChannels) == 16);
static_assert(offsetof(BarsAndToneInfo, frequency) == 20);
static_assert(offsetof(BarsAndToneInfo, amplitude) == 24);
static_assert(offsetof(BarsAndToneInfo, identifierFormat) == 28);

}  // namespace lineup
