#pragma once

#include <cstdint>

#include "../Brio/String.h"
#include "../Platform/CFBundle.h"
#include "Export.h"
#include "SmallBlockAllocator.h"

namespace zelcore::utility {

using ByteVector = SmallBlockAllocator::vector<std::uint8_t>;

/// Reads the resource NAME.TYPE of a bundle (Contents/Resources) into `bytes` and returns true; returns
/// false and leaves `bytes` empty when it is missing, cannot be read or is larger than 1 MiB, or when its
/// name is not a plain file name.
ZEL_API bool GetBinaryFromModule(CFBundleRef bundle, const Brio::String& name, const Brio::String& type,
                                 ByteVector& bytes);

}  // namespace zelcore::utility
