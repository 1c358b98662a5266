#pragma once

#if defined(__APPLE__)

#define OSATOMIC_DEPRECATED 0  // the system would rather have its C11 atomics called
#include <libkern/OSAtomic.h>

#else

#include <cstdint>

/// Adds `amount` to `*value` with a full barrier and returns the sum. Any thread.
// NOLINTNEXTLINE(readability-non-const-parameter): the built-in writes through it
inline std::int32_t OSAtomicAdd32Barrier(std::int32_t amount, volatile std::int32_t* value) noexcept {
    return __atomic_add_fetch(value, amount, __ATOMIC_SEQ_CST);
}

#endif
