#pragma once

/// Sines in vector registers. SineKernels.cpp is compiled once for each instruction level of the float
/// primitives and defines that level's table; CMakeLists.txt lists the levels.

namespace sine {

/// The largest magnitude of a phase that the kernels take, in radians.
inline constexpr double kLargestPhase = 16'777'216.0;

/// The samples that the kernels work on at a time.
inline constexpr int kBlock = 64;

/// The way from a block's first phase to each of its samples: sines[j] and cosines[j] of j * step.
struct Turns {
    double step;
    double sines[kBlock];    // NOLINT(*-avoid-c-arrays): std::array has inline functions
    double cosines[kBlock];  // NOLINT(*-avoid-c-arrays)
};

/// Every sample is what PlainSample gives, to the bit: a value that lies too near the middle between two
/// floats to be sure is computed by PlainSample itself. Amplitudes are finite and of a magnitude from
/// 2^-900 to 2^900. None allocates, locks or throws.
struct Kernels {
    /// out[i] for phases[i], i < count <= kBlock. phases has room for kBlock and is finite throughout.
    void (*ofPhases)(const double* phases, double amplitude, float* out, int count);

    /// The turns of a wave whose step is `step`, of a magnitude up to kLargestPhase / kBlock: a step near it
    /// whose multiples are exact.
    void (*turns)(double step, Turns* turns);

    /// out[i] for the phases of a stretch (PhaseStretch.h): phase + i * increment, i < count, count >= kBlock,
    /// of the wave that `turns` belongs to. All phases lie within kLargestPhase.
    void (*ofStretch)(const Turns* turns, double phase, double increment, double amplitude, float* out,
                      long long count);
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

}  // namespace sine
