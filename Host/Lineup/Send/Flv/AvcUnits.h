#pragma once

#include <lineup/Api.h>

#include <cstdint>
#include <span>
#include <vector>

namespace lineup {
inline namespace parts {

/// H.264 as FLV and MP4 carry it: parameter sets apart, and the length of each NAL unit in four bytes in front of it.
struct AvcUnit {
    std::vector<std::uint8_t> bytes;  ///< without parameter sets and delimiters
    bool isEntry = false;             ///< a decoder can begin with it
};
struct AvcGroup {
    std::vector<std::uint8_t> config;  ///< AVCDecoderConfigurationRecord (ISO/IEC 14496-15)
    std::vector<AvcUnit> units;
};

/// From access units with start codes, of which the first has the parameter sets. Throws Error where it has none.
[[nodiscard]] LINEUP_API AvcGroup ToAvc(std::span<const std::vector<std::uint8_t>> units);

}  // namespace parts
}  // namespace lineup
