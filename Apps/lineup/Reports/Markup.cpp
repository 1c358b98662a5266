#include "Apps/lineup/Reports/Markup.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

// The same text with what is no UTF-8 replaced.
std::string ValidText(std::string_view text) {
    using nlohmann::json;
    const std::string quoted = json(text).dump(-1, ' ', false, json::error_handler_t::replace);
    return json::parse(quoted).get<std::string>();
}

bool IsControl(char c) {
    const auto code = static_cast<unsigned char>(c);
    return (code < 0x20 && c != '\n' && c != '\t') || code == 0x7F;
}

}  // namespace

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : ValidText(text)) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                escaped += IsControl(c) ? '?' : c;
        }
    }
    return escaped;
}

}  // namespace cli
