#include "Src/VectorPrimitives/VectorPrimitives.h"

#include <algorithm>

namespace {

IppStatus Check(const void* source, const void* destination, int len) {
    if (source == nullptr || destination == nullptr) {
        return ippStsNullPtrErr;
    }
    return len <= 0 ? ippStsSizeErr : ippStsNoErr;
}

}  // namespace

IppStatus ippsCopy_32f(const Ipp32f* pSrc, Ipp32f* pDst, int len) {
    const IppStatus status = Check(pSrc, pDst, len);
    if (status == ippStsNoErr) {
        std::copy_n(pSrc, len, pDst);
    }
    return status;
}

IppStatus ippsZero_32f(Ipp32f* pDst, int len) {
    const IppStatus status = Check(pDst, pDst, len);
    if (status == ippStsNoErr) {
        std::fill_n(pDst, len, 0.0F);
    }
    return status;
}

IppStatus ippsMulC_32f(const Ipp32f* pSrc, Ipp32f val, Ipp32f* pDst, int len) {
    const IppStatus status = Check(pSrc, pDst, len);
    if (status == ippStsNoErr) {
        std::transform(pSrc, pSrc + len, pDst, [val](float x) { return x * val; });
    }
    return status;
}
