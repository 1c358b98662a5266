#pragma once

#include <cstddef>

namespace zelcore {

/// Bytes of the largest cache of this processor, as the processor itself tells; a usual size, 32 MiB, where it
/// does not. Any thread.
std::ptrdiff_t SharedCacheBytes() noexcept;

}  // namespace zelcore
