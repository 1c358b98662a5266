#pragma once

#include <lineup/Api.h>

#include <string_view>

namespace lineup {
inline namespace parts {

/// For a catch block at the library's door: throws what was caught, an Error as it is and anything else as an Error
/// "ACT: CAUSE".
[[noreturn]] LINEUP_API void RethrowAsError(std::string_view act);

}  // namespace parts
}  // namespace lineup
