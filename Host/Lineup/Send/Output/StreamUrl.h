#pragma once

#include <lineup/Api.h>
#include <lineup/SendSettings.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

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

/// Where a stream goes, the first target first; a pipe is "".
[[nodiscard]] LINEUP_API std::vector<std::string> TargetsOf(const SendSettings& settings);

}  // namespace parts
}  // namespace lineup
