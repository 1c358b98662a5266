#pragma once

#include <string>
#include <string_view>

namespace manual {

/// Text as a manual page's source says it: hyphens stay hyphens, and nothing is taken for a request.
[[nodiscard]] std::string Escaped(std::string_view text);

/// The same as lines of running text, none of them longer than a source should have.
[[nodiscard]] std::string Filled(std::string_view text);

/// The same, in bold or in italics.
[[nodiscard]] std::string Bold(std::string_view text);
[[nodiscard]] std::string Italic(std::string_view text);

/// The help text below a command's options as the source of a page. Lines that are not indented are running text;
/// those that are make a list: a term, two blanks or more, what it means, and below it, indented further, more of
/// it. "Examples:" and "Exit status:" begin a section of their own.
[[nodiscard]] std::string FromHelp(std::string_view text);

}  // namespace manual
