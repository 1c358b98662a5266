#pragma once

#include "Host/Interface/Brio/String.h"
#include "Host/Interface/Core/Export.h"

#include <string_view>

namespace zelcore::utility {

/// ASCII text as UTF-16; a byte above 127 becomes U+FFFD.
[[nodiscard]] ZEL_API Brio::String AsciiToUTF16(std::string_view ascii);

}  // namespace zelcore::utility
