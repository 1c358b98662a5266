#pragma once

#include <string_view>

#include "../Brio/String.h"
#include "Export.h"

namespace zelcore::utility {

/// ASCII text as UTF-16; a byte above 127 becomes U+FFFD.
[[nodiscard]] ZEL_API Brio::String AsciiToUTF16(std::string_view ascii);

}  // namespace zelcore::utility
