#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lineup {
inline namespace parts {

/// What a Broadcast Wave file holds.
struct WaveFormat {
    SampleFormat samples = SampleFormat::S24;
    int channels = 2;  ///< 1, 2, or 6 in the order L, R, C, LFE, Ls, Rs
    int sampleRateHz = 48000;
    std::int64_t frames = 0;         ///< samples a channel
    std::int64_t timeReference = 0;  ///< the first sample's place, in samples since midnight
    std::string description{};       ///< what sounds; 256 bytes of it are kept
    std::string date{};              ///< "2026-01-31", or empty
    std::string time{};              ///< "23:59:59", or empty
};

/// Everything that goes before the samples. The file is RIFF as long as 32 bits can count its bytes and RF64
/// (EBU Tech 3306) beyond; both have the same length. After an odd number of sample bytes one zero must follow.
LINEUP_API std::vector<std::uint8_t> WaveHeader(const WaveFormat& format);

}  // namespace parts
}  // namespace lineup
