#pragma once

#include "Src/VectorPrimitives/LevelKernels.h"
#include "Src/VectorPrimitives/VectorPrimitives.h"

/// The kernels behind the primitives, which VectorKernels.cpp defines for each instruction level.

namespace vectorkernels {

/// The three primitives at one instruction level. Arguments, results and statuses as in VectorPrimitives.h.
struct Kernels {
    IppStatus (*copy)(const Ipp32f* source, Ipp32f* destination, int len);
    IppStatus (*zero)(Ipp32f* destination, int len);
    IppStatus (*multiply)(const Ipp32f* source, Ipp32f val, Ipp32f* destination, int len);
};

VECTOR_DECLARE_KERNELS()

}  // namespace vectorkernels
