#pragma once

#include "../Core/SmallBlockAllocator.h"

namespace Brio {

/// The host's text type: UTF-16 code units from the small-block allocator.
using String = zelcore::utility::SmallBlockAllocator::basic_string<char16_t>;

}  // namespace Brio
