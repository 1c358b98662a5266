#pragma once

#include "Host/Interface/Brio/String.h"
#include "Host/Interface/Core/Export.h"

#include <optional>
#include <string>
#include <string_view>

namespace zelcore {
inline namespace parts {

/// `text` as UTF-8; half a surrogate pair is left out, and what it swallows behind it.
[[nodiscard]] ZEL_API std::string ToUtf8(const Brio::String& text);

/// `text` as UTF-8; nothing when it is not UTF-16.
[[nodiscard]] ZEL_API std::optional<std::string> ToUtf8Strictly(const Brio::String& text);

/// UTF-8 as UTF-16; what is not UTF-8 is left out.
[[nodiscard]] ZEL_API Brio::String FromUtf8(std::string_view text);

}  // namespace parts
}  // namespace zelcore
