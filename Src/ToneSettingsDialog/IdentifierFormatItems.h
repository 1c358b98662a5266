#pragma once

#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

/// One identification sequence that the dialog offers.
struct IdentifierFormatItem {
    std::string_view labelKey;  ///< the label's localisation key, default text included
    IdentifierFormat format;
};

/// What stereo clips offer.
inline constexpr std::array<IdentifierFormatItem, 2> kStereoIdentifierFormats = {{
    {"$$$/Corvane/Importers/BarsAndTone/ToneSettingsDialog/EBUStereo1000=EBU Stereo (1000 Hz)", EBUStereo1000},
    {"$$$/Corvane/Importers/BarsAndTone/ToneSettingsDialog/EBUStereo400=EBU Stereo (400 Hz)", EBUStereo400},
}};

/// What 5.1 clips offer.
inline constexpr std::array<IdentifierFormatItem, 2> k51IdentifierFormats = {{
    {"$$$/Corvane/Importers/BarsAndTone/ToneSettingsDialog/EBUMultichannel=EBU Multichannel (5.1)", EBUMultichannel},
    {"$$$/Corvane/Importers/BarsAndTone/ToneSettingsDialog/BLITS5_1=BLITS (5.1)", BLITS5_1},
}};

/// The sequences for clips of `channelType`, in the order they are shown; none for mono and unknown types.
constexpr std::span<const IdentifierFormatItem> IdentifierFormatItemsFor(std::uint32_t channelType) noexcept {
    switch (channelType) {
        case kChannelTypeStereo:
            return kStereoIdentifierFormats;
        case kChannelType51:
            return k51IdentifierFormats;
        default:
            return {};
    }
}
