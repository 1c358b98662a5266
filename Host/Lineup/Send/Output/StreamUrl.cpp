#include "Host/Lineup/Send/Output/StreamUrl.h"

#include <lineup/UsageError.h>

#include <algorithm>
#include <cctype>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::string_view kBehindScheme = "://";

[[noreturn]] void RefuseUrl(const std::string& text, const char* remedy) {
    throw UsageError("output", text, remedy);
}

}  // namespace

std::string SchemeOf(std::string_view text) {
    const std::size_t end = text.find(kBehindScheme);
    const std::string_view scheme = text.substr(0, end == std::string_view::npos ? 0 : end);
    const bool isName =
        std::ranges::all_of(scheme, [](unsigned char c) { return std::isalnum(c) != 0 || c == '+' || c == '-'; });
    return isName ? std::string(scheme) : std::string();
}

std::vector<std::string> TargetsOf(const SendSettings& settings) {
    std::vector<std::string> targets = {settings.pipe ? std::string() : settings.target};
    targets.insert(targets.end(), settings.moreTargets.begin(), settings.moreTargets.end());
    return targets;
}

StreamUrl ParseStreamUrl(const std::string& text) {
    StreamUrl url;
    url.scheme = SchemeOf(text);
    std::string rest = text.substr(url.scheme.size() + kBehindScheme.size());
    if (const std::size_t query = rest.find('?'); query != std::string::npos) {
        std::string options = rest.substr(query + 1) + "&";
        rest.resize(query);
        for (std::size_t end = 0; (end = options.find('&')) != std::string::npos; options.erase(0, end + 1)) {
            const std::string option = options.substr(0, end);
            const std::size_t sign = option.find('=');
            if (sign == std::string::npos) {
                RefuseUrl(text, "behind the ? there must be NAME=VALUE, with & in between");
            }
            url.options[option.substr(0, sign)] = option.substr(sign + 1);
        }
    }
    rest.resize(std::min(rest.find('/'), rest.size()));
    const std::size_t colon = rest.rfind(':');
    if (colon == std::string::npos || colon + 1 == rest.size()) {
        RefuseUrl(text, "must have a port: HOST:PORT");
    }
    url.port = rest.substr(colon + 1);
    url.host = rest.substr(0, colon);
    url.host.erase(0, url.host.find_first_not_of('@') == std::string::npos ? 0 : url.host.find_first_not_of('@'));
    if (url.host.starts_with('[') && url.host.ends_with(']')) {
        url.host = url.host.substr(1, url.host.size() - 2);
    }
    if (url.host.empty()) {
        RefuseUrl(text, "must have a host: a name or an address");
    }
    return url;
}

}  // namespace parts
}  // namespace lineup
