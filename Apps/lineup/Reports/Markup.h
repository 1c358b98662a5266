#pragma once

#include <string>
#include <string_view>

namespace cli {

/// `text` for a place between tags, or between quotes, of XML and HTML: what means something there is written
/// otherwise, and what may not stand there at all is a question mark.
[[nodiscard]] std::string Escaped(std::string_view text);

}  // namespace cli
