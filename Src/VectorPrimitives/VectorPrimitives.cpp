#include "Src/VectorPrimitives/VectorPrimitives.h"

#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/VectorPrimitives/VectorKernels.h"

#include <array>
#include <cstddef>

namespace vectorkernels {

namespace {

// The first call of the process finds the index at -1: these set it and go through the entry again.

IppStatus InitialiseAndCopy(const Ipp32f* source, Ipp32f* destination, int len) {
    ippSafeInit();
    return ippsCopy_32f(source, destination, len);
}

IppStatus InitialiseAndZero(Ipp32f* destination, int len) {
    ippSafeInit();
    return ippsZero_32f(destination, len);
}

IppStatus InitialiseAndMultiply(const Ipp32f* source, Ipp32f val, Ipp32f* destination, int len) {
    ippSafeInit();
    return ippsMulC_32f(source, val, destination, len);
}

constexpr Kernels kInitialise = {
    .copy = InitialiseAndCopy, .zero = InitialiseAndZero, .multiply = InitialiseAndMultiply};

// By index, from -1.
constexpr std::array kTable = {&kInitialise, VECTOR_KERNELS_BY_INDEX};
static_assert(kTable.size() == 1 + kVectorVariantCount);

// Relaxed: the index guards no other memory, and a thread that still reads -1 only initialises again.
const Kernels& Selected() {
    const std::int32_t index = ippJumpIndexForMergedLibs.load(std::memory_order_relaxed);
    return *kTable[static_cast<std::size_t>(index - kVectorNotInitialised)];
}

}  // namespace

}  // namespace vectorkernels

IppStatus ippsCopy_32f(const Ipp32f* pSrc, Ipp32f* pDst, int len) {
    return vectorkernels::Selected().copy(pSrc, pDst, len);
}

IppStatus ippsZero_32f(Ipp32f* pDst, int len) {
    return vectorkernels::Selected().zero(pDst, len);
}

IppStatus ippsMulC_32f(const Ipp32f* pSrc, Ipp32f val, Ipp32f* pDst, int len) {
    return vectorkernels::Selected().multiply(pSrc, val, pDst, len);
}
