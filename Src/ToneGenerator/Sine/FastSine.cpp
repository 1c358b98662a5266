#include "Src/ToneGenerator/Sine/FastSine.h"

#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/ToneGenerator/Sine/PhaseStretch.h"
#include "Src/ToneGenerator/Sine/SineKernels.h"
#include "Src/ToneGenerator/Sine/WholeCycles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace sine {

namespace {

// By dispatch index.
constexpr std::array kTable = {VECTOR_KERNELS_BY_INDEX};
static_assert(kTable.size() == kVectorVariantCount);

const Kernels& Selected() {
    std::int32_t index = ippJumpIndexForMergedLibs.load(std::memory_order_relaxed);
    if (index == kVectorNotInitialised) {
        ippSafeInit();
        index = ippJumpIndexForMergedLibs.load(std::memory_order_relaxed);
    }
    return *kTable[static_cast<std::size_t>(index)];
}

bool IsWithinReach(double phase) {
    return std::abs(phase) <= kLargestPhase;  // false for NaN
}

// Of `count` phases and the one after them. They move one way, so what lies between two within reach is too.
bool AreWithinReach(double phase, double step, long long count) {
    return IsWithinReach(phase) && IsWithinReach(phase + step * static_cast<double>(count));
}

// Those that the kernels take.
bool IsOrdinary(double amplitude) {
    return std::abs(amplitude) >= 0x1p-60 && std::abs(amplitude) <= 0x1p+60;
}

}  // namespace

void WriteFast(const Wave& wave, float* out, long long numSamples) {
    static constinit WholeCycles kept;
    if (!WholeCycles::Takes(wave, numSamples)) {
        WriteFast(Selected(), wave, out, numSamples);
    } else if (!kept.Find(wave, out, numSamples)) {
        WriteFast(Selected(), wave, out, numSamples);
        kept.Keep(wave, out, numSamples);
    }
}

void WriteFast(const Kernels& kernels, const Wave& wave, float* out, long long numSamples) {
    const auto& [firstPhase, step, amplitude] = wave;
    if (!IsOrdinary(amplitude) || step == 0.0) {
        WritePlain(wave, out, numSamples);
        return;
    }
    Turns turns;  // NOLINT(*-member-init): made for the first stretch
    bool hasTurns = false;
    double phase = firstPhase;
    long long count = 0;
    for (long long pos = 0; pos < numSamples; pos += count) {
        const long long left = numSamples - pos;
        count = left;
        if (left >= kernels.shortestStretch) {
            const Stretch stretch = FindStretch(phase, step, left);
            const double last = phase + static_cast<double>(stretch.count - 1) * stretch.increment;
            if (stretch.count >= kernels.shortestStretch && IsWithinReach(last)) {
                if (!hasTurns) {
                    kernels.turns(step, &turns);
                    hasTurns = true;
                }
                count = stretch.count;
                kernels.ofStretch(&turns, phase, stretch.increment, amplitude, out + pos, count);
                phase = last + step;
                continue;
            }
            count = std::clamp<long long>(stretch.count, kBlock, left);
        }
        if (!AreWithinReach(phase, step, count)) {
            WritePlain({phase, step, amplitude}, out + pos, left);
            return;
        }
        const double next = kernels.ofPhases(phase, step, amplitude, out + pos, count);
        if (phase == 0.0) {  // its own sine, of which the kernels do not tell the sign
            out[pos] = static_cast<float>(phase * amplitude);
        }
        phase = next;
    }
}

}  // namespace sine
