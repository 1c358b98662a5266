#pragma once

#include "Host/Interface/Core/Export.h"

#include <atomic>
#include <cstdint>

/// The runtime core of the float-buffer primitives, which the host owns: which processor variant
/// serves, and the byte kernels underneath. C linkage.

/// The variants, by the value of ippJumpIndexForMergedLibs.
enum VectorVariant : std::int32_t {
    kVectorNotInitialised = -1,
    kVector_n8 = 0,  ///< SSE2
    kVector_y8 = 1,  ///< SSSE3 and SSE4
    kVector_e9 = 2,  ///< AVX
    kVector_l9 = 3,  ///< AVX2
    kVector_k0 = 4,  ///< AVX-512
};
inline constexpr int kVectorVariantCount = 5;

extern "C" {

/// The dispatch index, one for the process: -1 until ippSafeInit has run. It has the size and
/// layout of a plain int32_t.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): part of the interface
ZEL_API extern std::atomic<std::int32_t> ippJumpIndexForMergedLibs;

/// Stores the best variant that this processor and operating system run in the dispatch index.
/// Idempotent; any thread, several at once.
ZEL_API void ippSafeInit();

/// Copies `bytes` bytes between blocks that do not overlap. The forms differ in the sizes they are
/// meant for, never in what they write: _E9 below 32 KiB, the others from there on.
ZEL_API void ippCopyBytes(const void* source, void* destination, std::int64_t bytes);
ZEL_API void ippCopyBytes_E9(const void* source, void* destination, std::int64_t bytes);
ZEL_API void ippCopyBytes_repE9(const void* source, void* destination, std::int64_t bytes);

/// Zeroes `bytes` bytes. _E9 is meant for up to 2 MiB, the plain form for more.
ZEL_API void ippZeroBytes(void* destination, std::int64_t bytes);
ZEL_API void ippZeroBytes_E9(void* destination, std::int64_t bytes);
}

static_assert(sizeof(std::atomic<std::int32_t>) == sizeof(std::int32_t));
