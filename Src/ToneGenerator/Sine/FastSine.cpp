#include "Src/ToneGenerator/Sine/FastSine.h"

#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/ToneGenerator/Sine/PhaseStretch.h"
#include "Src/ToneGenerator/Sine/SineKernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

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

// A stretch has a table of its own, which fewer samples do not pay for.
constexpr long long kShortestStretch = kBlock;

bool IsWithinReach(double phase) {
    return std::abs(phase) <= kLargestPhase;  // false for what is not a number
}

// The kernels' uncertainty is a part of the amplitude, which must not vanish beside it.
bool IsOrdinary(double amplitude) {
    return std::abs(amplitude) >= 0x1p-900 && std::abs(amplitude) <= 0x1p+900;
}

// The phases from `phase` on, added one by one. Returns the one after the last.
double AddUp(double phase, double step, std::span<double> phases) {
    for (double& each : phases) {
        each = phase;
        phase += step;
    }
    return phase;
}

}  // namespace

void WriteFast(const Wave& wave, float* out, long long numSamples) {
    WriteFast(Selected(), wave, out, numSamples);
}

void WriteFast(const Kernels& kernels, const Wave& wave, float* out, long long numSamples) {
    const auto& [firstPhase, step, amplitude] = wave;
    if (!IsOrdinary(amplitude)) {
        WritePlain(wave, out, numSamples);
        return;
    }
    Turns turns;  // NOLINT(*-member-init): made for the first stretch
    bool hasTurns = false;
    double phase = firstPhase;
    long long count = 0;
    for (long long pos = 0; pos < numSamples; pos += count) {
        const Stretch stretch = FindStretch(phase, step, numSamples - pos);
        if (stretch.count >= kShortestStretch) {
            const double last = phase + static_cast<double>(stretch.count - 1) * stretch.increment;
            if (IsWithinReach(last)) {
                if (!hasTurns) {
                    kernels.turns(step, &turns);
                    hasTurns = true;
                }
                count = stretch.count;
                kernels.ofStretch(&turns, phase, stretch.increment, amplitude, out + pos, count);
                phase = last + step;
                continue;
            }
        }
        std::array<double, kBlock> phases = {};
        count = std::min<long long>(numSamples - pos, kBlock);
        const double next = AddUp(phase, step, std::span(phases).first(static_cast<std::size_t>(count)));
        // Phases move one way, so those between two within reach are too.
        if (!IsWithinReach(phase) || !IsWithinReach(next)) {
            WritePlain({phase, step, amplitude}, out + pos, numSamples - pos);
            return;
        }
        kernels.ofPhases(phases.data(), amplitude, out + pos, static_cast<int>(count));
        phase = next;
    }
}

}  // namespace sine
