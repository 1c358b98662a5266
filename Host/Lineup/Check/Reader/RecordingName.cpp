#include "Host/Lineup/Check/Reader/RecordingName.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
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

// The session description in a file, as a URL; empty where the file is something else.
std::string SessionIn(const std::string& path) {
    constexpr std::size_t kLongest = 65536;
    std::error_code error;
    if (!path.ends_with(".sdp") || !std::filesystem::is_regular_file(path, error)) {
        return {};
    }
    std::ifstream file(path, std::ios::binary);
    std::string text(kLongest + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    const bool isSession = text.starts_with("v=0") && text.size() <= kLongest && text.find('\0') == std::string::npos;
    return isSession ? "data:application/sdp," + text : "";
}

RecordingName NameFile(const std::string& path) {
    const std::string session = SessionIn(path);
    return session.empty() ? RecordingName{.kind = RecordingName::Kind::File, .text = path}
                           : RecordingName{.kind = RecordingName::Kind::Url, .text = session};
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
        return NameFile(recording);
    }
    if (recording.starts_with(kLocal)) {
        const std::string path = recording.substr(kLocal.size());
        return NameFile(path.starts_with("//") ? path.substr(2) : path);
    }
    return {.kind = IsUrl(recording) ? Kind::Url : Kind::File, .text = recording};
}

}  // namespace parts

}  // namespace lineup
