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
/// floats to be sure is computed by PlainSample itself. Amplitudes are of a magnitude from 2^-60 to 2^60: then no
/// sample but 0 is too small or too large for a float of full precision. None allocates, locks or throws.
struct Kernels {
    /// out[i] for i < count of a wave whose phases all lie within kLargestPhase; but 0 where a phase is 0, of whatever
    /// sign. Returns the phase after the last.
    double (*ofPhases)(double phase, double step, double amplitude, float* out, long long count);

    /// The turns of a wave whose step is `step`, of a magnitude up to kLargestPhase / kBlock: a step near it
    /// whose multiples are exact.
    void (*turns)(double step, Turns* turns);

    /// out[i] for the phases of a stretch (PhaseStretch.h): phase + i * increment, i < count, count >= kBlock,
    /// of the wave that `turns` belongs to. All phases lie within kLargestPhase.
    void (*ofStretch)(const Turns* turns, double phase, double increment, double amplitude, float* out,
                      long long count);

    /// The samples of a stretch from which on the table that it needs pays; kBlock at least.
    long long shortestStretch;
};

VECTOR_DECLARE_KERNELS()

}  // namespace sine
