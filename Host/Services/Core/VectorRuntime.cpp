#include "Host/Interface/Core/VectorRuntime.h"

#include "Host/Interface/Core/ByteKernels.h"

#include <cstring>

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): part of the interface
std::atomic<std::int32_t> ippJumpIndexForMergedLibs{kVectorNotInitialised};

namespace {

// The best level that runs here. The compiler's feature tests include the operating system's consent to the wider
// registers.
std::int32_t BestVariant() {
    std::int32_t best = kVectorLowest;
#if defined(__x86_64__)
    __builtin_cpu_init();
#define VECTOR_TAKE(level, enumerator, bytes, feature, otherFeature)                         \
    if (__builtin_cpu_supports(feature) != 0 && __builtin_cpu_supports(otherFeature) != 0) { \
        best = enumerator;                                                                   \
    }
    VECTOR_LEVELS(VECTOR_TAKE)
#undef VECTOR_TAKE
#endif
    return best;
}

// The C library picks its own kernel for the processor and the size, so the forms share it. A copy of a
// block onto itself is allowed, which memcpy does not promise.
void Copy(const void* source, void* destination, std::int64_t bytes) {
    if (bytes > 0) {
        std::memmove(destination, source, static_cast<std::size_t>(bytes));
    }
}

void Zero(void* destination, std::int64_t bytes) {
    if (bytes > 0) {
        std::memset(destination, 0, static_cast<std::size_t>(bytes));
    }
}

}  // namespace

void ippSafeInit() {
    ippJumpIndexForMergedLibs.store(BestVariant(), std::memory_order_relaxed);
}

void ippCopyBytes(const void* source, void* destination, std::int64_t bytes) {
    Copy(source, destination, bytes);
}
void ippCopyBytes_E9(const void* source, void* destination, std::int64_t bytes) {
    Copy(source, destination, bytes);
}
void ippCopyBytes_repE9(const void* source, void* destination, std::int64_t bytes) {
    Copy(source, destination, bytes);
}

void ippZeroBytes(void* destination, std::int64_t bytes) {
    Zero(destination, bytes);
}
void ippZeroBytes_E9(void* destination, std::int64_t bytes) {
    Zero(destination, bytes);
}
