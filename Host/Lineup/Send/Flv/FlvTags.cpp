#include "Host/Lineup/Send/Flv/FlvTags.h"

#include "Host/Lineup/Send/Transport/WideMath.h"

#include <array>
#include <bit>
#include <cstddef>

namespace lineup {
inline namespace parts {

namespace {

using FlvBytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kSoundTag = 8;
constexpr std::uint8_t kPictureTag = 9;
constexpr std::uint8_t kScriptTag = 18;
constexpr std::size_t kTagHead = 11;
constexpr std::size_t kTagSizeBytes = 4;

// AAC; what else the byte has room for is the same for all of it.
constexpr std::uint8_t kAac = 0xAF;

enum class Content : std::uint8_t { Config = 0, Media = 1 };

void PutBigEndian(FlvBytes& bytes, std::uint64_t number, unsigned count) {
    while (count-- > 0) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * count)));
    }
}

std::uint32_t BigEndianAt(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t count) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(at, count)) {
        number = number << 8U | byte;
    }
    return number;
}

// `head`: how the content begins.
void PutTag(FlvBytes& bytes, std::uint8_t kind, std::int64_t ms, std::span<const std::uint8_t> head,
            std::span<const std::uint8_t> rest) {
    const auto stamp = static_cast<std::uint64_t>(Modulo(ms, kFlvWrapMs));
    const std::size_t size = head.size() + rest.size();
    bytes.push_back(kind);
    PutBigEndian(bytes, size, 3);
    PutBigEndian(bytes, stamp & 0xFFFFFFU, 3);
    PutBigEndian(bytes, stamp >> 24U, 1);
    PutBigEndian(bytes, 0, 3);  // the stream, always 0
    bytes.insert(bytes.end(), head.begin(), head.end());
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    PutBigEndian(bytes, kTagHead + size, kTagSizeBytes);
}

void PutPicture(FlvBytes& bytes, std::int64_t ms, std::uint8_t kind, Content content,
                std::span<const std::uint8_t> rest) {
    PutTag(bytes, kPictureTag, ms, std::array<std::uint8_t, 5>{kind, static_cast<std::uint8_t>(content)}, rest);
}

void PutSound(FlvBytes& bytes, std::int64_t ms, Content content, std::span<const std::uint8_t> rest) {
    PutTag(bytes, kSoundTag, ms, std::array<std::uint8_t, 2>{kAac, static_cast<std::uint8_t>(content)}, rest);
}

// Of AMF0: names have their length in front.
void PutName(FlvBytes& bytes, std::string_view name) {
    PutBigEndian(bytes, name.size(), 2);
    bytes.insert(bytes.end(), name.begin(), name.end());
}

}  // namespace

void AppendFlvHead(bool hasPicture, bool hasSound, std::vector<std::uint8_t>& bytes) {
    const auto kinds = static_cast<std::uint8_t>((hasPicture ? 1U : 0U) | (hasSound ? 4U : 0U));
    bytes.insert(bytes.end(), {'F', 'L', 'V', 1, kinds});
    PutBigEndian(bytes, 9, 4);  // bytes of the head
    PutBigEndian(bytes, 0, kTagSizeBytes);
}

void AppendFlvFacts(std::span<const FlvFact> facts, std::vector<std::uint8_t>& bytes) {
    FlvBytes script = {2};  // a text
    PutName(script, "onMetaData");
    script.push_back(8);  // a table
    PutBigEndian(script, facts.size(), 4);
    for (const auto& [name, value] : facts) {
        PutName(script, name);
        script.push_back(0);  // a number
        PutBigEndian(script, std::bit_cast<std::uint64_t>(value), 8);
    }
    script.insert(script.end(), {0, 0, 9});
    PutTag(bytes, kScriptTag, 0, script, {});
}

void AppendFlvPicture(std::int64_t ms, bool isEntry, std::span<const std::uint8_t> unit,
                      std::vector<std::uint8_t>& bytes) {
    PutPicture(bytes, ms, isEntry ? FlvPicture::kEntry : FlvPicture::kOther, Content::Media, unit);
}

void AppendFlvSound(std::int64_t ms, std::span<const std::uint8_t> frame, std::vector<std::uint8_t>& bytes) {
    PutSound(bytes, ms, Content::Media, frame);
}

void AppendFlvPictureConfig(std::span<const std::uint8_t> config, std::vector<std::uint8_t>& bytes) {
    PutPicture(bytes, 0, FlvPicture::kEntry, Content::Config, config);
}

void AppendFlvSoundConfig(std::span<const std::uint8_t> config, std::vector<std::uint8_t>& bytes) {
    PutSound(bytes, 0, Content::Config, config);
}

FlvTag FirstFlvTag(std::span<const std::uint8_t> bytes) {
    const std::size_t size = BigEndianAt(bytes, 1, 3);
    return {.bytes = bytes.first(kTagHead + size + kTagSizeBytes),
            .ms = std::int64_t{BigEndianAt(bytes, 4, 3)} | std::int64_t{bytes[7]} << 24U,
            .isEntry = bytes[0] == kPictureTag && bytes[kTagHead] == FlvPicture::kEntry};
}

}  // namespace parts
}  // namespace lineup
