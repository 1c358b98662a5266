#pragma once

#include <string>
#include <string_view>

namespace zelcore {

/// The parts of a locale's name "language_COUNTRY.charset@variant" that choose a catalogue; all empty
/// for the default texts.
struct LanguageName {
    std::string language;
    std::string country;
    std::string variant;
};

/// The parts of `locale`. "C", "POSIX" and a name whose parts are not letters and digits, which no
/// folder of catalogues is called, give the default texts.
[[nodiscard]] LanguageName ParseLanguageName(std::string_view locale);

/// The language that LC_ALL, LC_MESSAGES or LANG name, the first that is set.
[[nodiscard]] LanguageName LanguageOfEnvironment();

}  // namespace zelcore
