#include "Host/Lineup/Check/Reader/RecordingName.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace lineup {

inline namespace parts {

namespace {

bool IsUrl(std::string_view text) {
    const auto isPartOfScheme = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' ||
               c == '.';
    };
    const std::size_t end = text.find("://");
    const bool hasScheme =
        end != std::string_view::npos && end > 0 && std::ranges::all_of(text.substr(0, end), isPartOfScheme);
    return hasScheme || text.starts_with("data:");
}

}  // namespace

RecordingName ParseRecordingName(const std::string& recording) {
    using Kind = RecordingName::Kind;
    constexpr std::string_view kLocal = "file:";
    if (recording == "-") {
        return {.kind = Kind::StandardInput, .text = {}};
    }
    std::error_code error;
    if (std::filesystem::exists(recording, error)) {
        return {.kind = Kind::File, .text = recording};
    }
    if (recording.starts_with(kLocal)) {
        const std::string path = recording.substr(kLocal.size());
        return {.kind = Kind::File, .text = path.starts_with("//") ? path.substr(2) : path};
    }
    return {.kind = IsUrl(recording) ? Kind::Url : Kind::File, .text = recording};
}

}  // namespace parts

}  // namespace lineup
