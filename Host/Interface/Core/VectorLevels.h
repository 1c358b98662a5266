#pragma once

/// The instruction levels that vector code is compiled for, slowest first, by processor; a level's place is its value
/// of ippJumpIndexForMergedLibs. Of each: its name, the enumerator of that value, the bytes of a register, and the two
/// features that a processor must have, as the compiler's -m options name them (the same one twice where one is
/// enough, and nothing where every such processor has it).
///
/// Everything that differs by level reads this table: the detection and both dispatchers, their tests and benchmarks,
/// and the build, which takes the compiler's options from it (one row a line).
#define VECTOR_LEVELS_X86_64(LEVEL)             \
    LEVEL(n8, kVectorN8, 16, "sse2", "sse2")    \
    LEVEL(y8, kVectorY8, 16, "ssse3", "sse4.1") \
    LEVEL(e9, kVectorE9, 32, "avx", "avx")      \
    LEVEL(l9, kVectorL9, 32, "avx2", "fma")     \
    LEVEL(k0, kVectorK0, 64, "avx512f", "avx512f")

#define VECTOR_LEVELS_AARCH64(LEVEL) LEVEL(neon, kVectorNeon, 16, "", "")

/// Of this processor. Any other is served by the portable kernels alone.
#if defined(__x86_64__)
#define VECTOR_LEVELS VECTOR_LEVELS_X86_64
#elif defined(__aarch64__)
#define VECTOR_LEVELS VECTOR_LEVELS_AARCH64
#else
#define VECTOR_LEVELS(LEVEL) LEVEL(portable, kVectorPortable, 0, "", "")
#endif
