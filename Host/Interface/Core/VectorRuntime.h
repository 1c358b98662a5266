#pragma once

#include <atomic>
#include <cstdint>

#include "Export.h"
#include "VectorLevels.h"

/// Which processor variant of the float-buffer primitives serves. The host owns the index, so that
/// every module in the process goes by the same one. C linkage.

/// The instruction levels (VectorLevels.h), by the value of ippJumpIndexForMergedLibs.
enum VectorVariant : std::int32_t {
    kVectorNotInitialised = -1,
#define VECTOR_ENUMERATOR(level, enumerator, ...) enumerator,
    VECTOR_LEVELS(VECTOR_ENUMERATOR)
#undef VECTOR_ENUMERATOR
        kVectorVariantEnd
};
inline constexpr int kVectorVariantCount = kVectorVariantEnd;
inline constexpr std::int32_t kVectorLowest = kVectorNotInitialised + 1;  ///< every such processor runs it

extern "C" {

/// The dispatch index, one for the process: -1 until ippSafeInit has run, then a variant that this
/// machine runs. It has the size and layout of a plain int32_t.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): part of the interface
ZEL_API extern std::atomic<std::int32_t> ippJumpIndexForMergedLibs;

/// Stores the best variant that this processor and operating system run in the dispatch index.
/// Idempotent; any thread, several at once.
ZEL_API void ippSafeInit();
}

static_assert(sizeof(std::atomic<std::int32_t>) == sizeof(std::int32_t));
