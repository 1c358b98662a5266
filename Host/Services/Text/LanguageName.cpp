#include "Host/Services/Text/LanguageName.h"

#include <algorithm>
#include <cstdlib>

namespace zelcore {

namespace {

// Cuts `text` at the first `separator` and returns what stood behind it.
std::string_view CutOff(std::string_view& text, char separator) {
    const auto position = text.find(separator);
    if (position == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = text.substr(position + 1);
    text = text.substr(0, position);
    return rest;
}

bool IsPlain(std::string_view part) {
    return std::all_of(part.begin(), part.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

}  // namespace

LanguageName ParseLanguageName(std::string_view locale) {
    const std::string_view variant = CutOff(locale, '@');
    CutOff(locale, '.');
    const std::string_view country = CutOff(locale, '_');
    if (locale == "C" || locale == "POSIX" || !IsPlain(locale) || !IsPlain(country) || !IsPlain(variant)) {
        return {};
    }
    return {std::string(locale), std::string(country), std::string(variant)};
}

LanguageName LanguageOfEnvironment() {
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const locale = std::getenv(variable);
        if (locale != nullptr && *locale != '\0') {
            return ParseLanguageName(locale);
        }
    }
    return {};
}

}  // namespace zelcore
