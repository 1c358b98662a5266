#pragma once

#include <lineup/Api.h>

#include <map>
#include <string>
#include <string_view>

namespace lineup {
inline namespace parts {

/// A target as its parts: "udp://host:port?name=value&name=value". A file's name has no scheme.
struct StreamUrl {
    std::string scheme;
    std::string host;
    std::string port;
    std::map<std::string, std::string, std::less<>> options;
};

/// Throws UsageError (option "output") for a URL without a host or port where `needsPort`.
[[nodiscard]] LINEUP_API StreamUrl ParseStreamUrl(const std::string& text);

/// The scheme of a URL, or "" for a file's name.
[[nodiscard]] LINEUP_API std::string SchemeOf(std::string_view text);

}  // namespace parts
}  // namespace lineup
