#pragma once

#include <cstdint>

/// Copy, zero and scale of float buffers. Each call goes to the variant that the process-wide
/// dispatch index names; every variant gives the same bits. None allocates, locks or throws, and all
/// are safe to call concurrently on buffers that do not overlap.

using Ipp32f = float;
using Ipp8u = std::uint8_t;

/// Status of a primitive. Pointers are checked before the length.
enum IppStatus : std::int32_t {
    ippStsNoErr = 0,
    ippStsSizeErr = -6,     ///< the length is zero or negative; nothing was written
    ippStsNullPtrErr = -8,  ///< a pointer is null; nothing was written
};

extern "C" {

/// pDst[i] = pSrc[i] for i < len, bit for bit.
IppStatus ippsCopy_32f(const Ipp32f* pSrc, Ipp32f* pDst, int len);

/// pDst[i] = 0.0f for i < len.
IppStatus ippsZero_32f(Ipp32f* pDst, int len);

/// pDst[i] = pSrc[i] * val for i < len. A val of exactly 1 copies and one of exactly 0 zeroes,
/// whatever the source holds.
IppStatus ippsMulC_32f(const Ipp32f* pSrc, Ipp32f val, Ipp32f* pDst, int len);
}
