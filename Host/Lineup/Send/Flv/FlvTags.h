#pragma once

#include <lineup/Api.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

/// FLV: tags with a kind, a time stamp in ms and their size, one behind the other.
namespace lineup {
inline namespace parts {

/// Time stamps start anew where 32 bits of ms end: after 49 d 17 h.
inline constexpr std::int64_t kFlvWrapMs = std::int64_t{1} << 32U;

/// How a tag's content begins.
struct FlvPicture {
    static constexpr std::uint8_t kEntry = 0x17;  ///< H.264, a picture that stands alone
    static constexpr std::uint8_t kOther = 0x27;
};

/// A number of the stream, under the name that FLV has for it.
using FlvFact = std::pair<std::string_view, double>;

/// Put what they say behind `bytes`. Times are in ms from any start.
LINEUP_API void AppendFlvHead(bool hasPicture, bool hasSound, std::vector<std::uint8_t>& bytes);
LINEUP_API void AppendFlvFacts(std::span<const FlvFact> facts, std::vector<std::uint8_t>& bytes);
LINEUP_API void AppendFlvPicture(std::int64_t ms, bool isEntry, std::span<const std::uint8_t> unit,
                                 std::vector<std::uint8_t>& bytes);
LINEUP_API void AppendFlvSound(std::int64_t ms, std::span<const std::uint8_t> frame, std::vector<std::uint8_t>& bytes);

/// What decoders need before the first of their kind: an AVCDecoderConfigurationRecord, an AudioSpecificConfig.
LINEUP_API void AppendFlvPictureConfig(std::span<const std::uint8_t> config, std::vector<std::uint8_t>& bytes);
LINEUP_API void AppendFlvSoundConfig(std::span<const std::uint8_t> config, std::vector<std::uint8_t>& bytes);

/// A tag as it lies in bytes.
struct FlvTag {
    std::span<const std::uint8_t> bytes;  ///< all of it, with the size behind it
    std::int64_t ms = 0;                  ///< from 0, below kFlvWrapMs
    bool isEntry = false;                 ///< a picture that stands alone
};

/// The tag with which `bytes` begin.
[[nodiscard]] LINEUP_API FlvTag FirstFlvTag(std::span<const std::uint8_t> bytes);

}  // namespace parts
}  // namespace lineup
