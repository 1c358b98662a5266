#pragma once

#include "Src/ToneGenerator/Sine/PlainSine.h"

namespace sine {

struct Kernels;

/// What WritePlain writes, to the bit, by the kernels that the process-wide dispatch index names.
void WriteFast(const Wave& wave, float* out, long long numSamples);

/// The same by the given kernels.
void WriteFast(const Kernels& kernels, const Wave& wave, float* out, long long numSamples);

}  // namespace sine
