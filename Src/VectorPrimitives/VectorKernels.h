#pragma once

#include "Src/VectorPrimitives/VectorPrimitives.h"

/// The variants behind the primitives. VectorKernels.cpp is compiled once for each instruction level and
/// defines that level's table; CMakeLists.txt lists the levels.

namespace vectorkernels {

/// The three primitives at one instruction level. Arguments, results and statuses as in
/// VectorPrimitives.h.
struct Kernels {
    IppStatus (*copy)(const Ipp32f* source, Ipp32f* destination, int len);
    IppStatus (*zero)(Ipp32f* destination, int len);
    IppStatus (*multiply)(const Ipp32f* source, Ipp32f val, Ipp32f* destination, int len);
};

namespace n8 {
extern const Kernels kKernels;  ///< SSE2
}
namespace y8 {
extern const Kernels kKernels;  ///< SSSE3 and SSE4.1
}
namespace e9 {
extern const Kernels kKernels;  ///< AVX
}
namespace l9 {
extern const Kernels kKernels;  ///< AVX2
}
namespace k0 {
extern const Kernels kKernels;  ///< AVX-512 Foundation
}
namespace portable {
extern const Kernels kKernels;  ///< any processor
}

}  // namespace vectorkernels
