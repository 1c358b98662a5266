#pragma once

#include "Src/VectorPrimitives/LevelKernels.h"

/// Sines in vector registers, which SineKernels.cpp defines for each instruction level.

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

VECTOR_DECLARE_KERNELS()

}  // namespace sine
