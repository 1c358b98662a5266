#pragma once

#include "Host/Interface/Core/VectorLevels.h"

// Kernels that are compiled once for each instruction level: a source compiled so (VectorVariants.cmake) defines
// kKernels in the namespace of its level, or of `portable`. For use inside the namespace that holds those, after its
// type Kernels. Macros alone: the sources of the levels must share no code.

#define VECTOR_DECLARE_LEVEL(level, ...) \
    namespace level {                    \
    extern const Kernels kKernels;       \
    }

/// Declares the kernels of every level, and portable::kKernels, which any processor runs.
#define VECTOR_DECLARE_KERNELS()        \
    VECTOR_LEVELS(VECTOR_DECLARE_LEVEL) \
    VECTOR_DECLARE_LEVEL(portable)

#define VECTOR_SERVES(level, ...) &level::kKernels,

/// What serves each value of the dispatch index from 0 on, as the elements of an array.
#define VECTOR_KERNELS_BY_INDEX VECTOR_LEVELS(VECTOR_SERVES)
