#include "Tests/Host/Lineup/Send/FlvReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace test {

namespace {

std::uint32_t FlvNumber(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes) {
        number = number << 8U | byte;
    }
    return number;
}

}  // namespace

std::vector<ReceivedTag> ReceivedFlv::Media(int kind) const {
    std::vector<ReceivedTag> media;
    std::ranges::copy_if(tags, std::back_inserter(media),
                         [kind](const ReceivedTag& tag) { return tag.kind == kind && !tag.IsConfig(); });
    return media;
}

ReceivedFlv ReadFlv(std::span<const std::uint8_t> bytes, bool hasHead) {
    constexpr std::size_t kFileHead = 13;
    constexpr std::size_t kTagHeadBytes = 11;
    ReceivedFlv flv;
    if (hasHead) {
        if (bytes.size() < kFileHead || bytes[0] != 'F' || bytes[1] != 'L' || bytes[2] != 'V' ||
            FlvNumber(bytes.subspan(5, 4)) != 9 || FlvNumber(bytes.subspan(9, 4)) != 0) {
            flv.errors.emplace_back("no head of FLV");
            return flv;
        }
        bytes = bytes.subspan(kFileHead);
    }
    while (bytes.size() >= kTagHeadBytes) {
        const std::size_t size = kTagHeadBytes + FlvNumber(bytes.subspan(1, 3));
        if (bytes.size() < size + 4) {
            break;
        }
        ReceivedTag& tag = flv.tags.emplace_back();
        tag.kind = bytes[0];
        tag.ms = std::int64_t{FlvNumber(bytes.subspan(4, 3))} | std::int64_t{bytes[7]} << 24U;
        const auto content = bytes.subspan(kTagHeadBytes, size - kTagHeadBytes);
        tag.content.assign(content.begin(), content.end());
        if ((tag.kind != 8 && tag.kind != 9 && tag.kind != 18) || FlvNumber(bytes.subspan(8, 3)) != 0 ||
            FlvNumber(bytes.subspan(size, 4)) != size) {
            flv.errors.push_back(fmt::format("tag {}: no proper tag, or another size behind it", flv.tags.size() - 1));
            break;
        }
        bytes = bytes.subspan(size + 4);
    }
    return flv;
}

}  // namespace test
