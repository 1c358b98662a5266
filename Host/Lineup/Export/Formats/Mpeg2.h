#pragma once

#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <array>

namespace lineup {
inline namespace parts {

/// The rates of MPEG-2 video at High level.
inline constexpr std::array<Rational, 8> kMpeg2FrameRates = {{
    {24000, 1001},
    {24, 1},
    {25, 1},
    {30000, 1001},
    {30, 1},
    {50, 1},
    {60000, 1001},
    {60, 1},
}};

/// What each level of its 4:2:2 profile allows.
inline constexpr std::array<CodecLevel, 2> kMpeg2Levels = {{
    {5, 720, 608, 11'059'200, 9'437'184},     // Main
    {2, 1920, 1088, 62'668'800, 17'825'792},  // High, which could have a larger buffer
}};
inline constexpr const CodecLevel& kMpeg2Highest = kMpeg2Levels.back();

}  // namespace parts
}  // namespace lineup
