#include "Src/ToneGenerator/Sine/SineKernels.h"

#include "Src/ToneGenerator/Sine/Blocks.h"
#include "Src/ToneGenerator/Sine/PhaseStretch.h"
#include "Src/ToneGenerator/Sine/PlainSine.h"
#include "Src/ToneGenerator/Sine/SineRegister.h"

#include <cstddef>
#include <cstdint>

// One instruction level of the sines: compiled once for each, with
//   VECTOR_VARIANT  the level's name (Host/Interface/Core/VectorLevels.h), or portable
//   VECTOR_BYTES    the width of its registers (SineRegister.h)
// Only the table at the end has a name outside this file, and no header with inline functions comes in:
// code of one level must never serve another.

namespace sine::VECTOR_VARIANT {

namespace {

static_assert(kBlock % kLanes == 0);

constexpr double kInversePi = 0x1.45f306dc9c883p-2;

// A double of this size counts in ones: adding it rounds to the nearest integer, whose last bit comes to
// stand last.
constexpr double kRounder = 0x1.8p+52;

constexpr Doubles All(double value) {
    return value - Doubles{};  // unlike a sum with zero, this costs nothing
}

// sin r for |r| < 1.5709, as r + r^3 * a polynomial in r^2: the one that comes nearest to the sine in units of the
// sine, within 2^-52.3.
Doubles SineOfReduced(Doubles r) {
    const Doubles square = r * r;
    Doubles sum = MultiplyAdd(square, All(-0x1.9f14930d4a8dfp-41), All(0x1.60e6bab2494dep-33));
    sum = MultiplyAdd(sum, square, All(-0x1.ae63559069b98p-26));
    sum = MultiplyAdd(sum, square, All(0x1.71de38065d1ddp-19));
    sum = MultiplyAdd(sum, square, All(-0x1.a01a019a64a3cp-13));
    sum = MultiplyAdd(sum, square, All(0x1.111111110a55dp-7));
    sum = MultiplyAdd(sum, square, All(-0x1.55555555554a8p-3));
    return MultiplyAdd(r * square, sum, r);
}

// phase - halves * pi, `halves` being a multiple of one half below 2^24, within 2^-51 of itself: pi comes in parts. The
// first difference is exact, and so are the others where they are small. No double but 0 is nearer to a multiple of
// pi / 2 than 2^-62, beside which what the last part leaves of pi is nothing.
Doubles Reduce(Doubles phase, Doubles halves) {
    if constexpr (kMultipliesAndAddsAtOnce) {
        const Doubles r = MultiplyAdd(-halves, All(0x1.921fb54442d18p+1), phase);
        return MultiplyAdd(-halves, All(-0x1.f1976b7ed8fbcp-109), MultiplyAdd(-halves, All(0x1.1a62633145c07p-53), r));
    } else {  // products of the first three parts are exact
        const Doubles r = ((phase - halves * 0x1.921fb54p+1) - halves * 0x1.10b461p-29) - halves * 0x1.a62633p-57;
        return r - halves * 0x1.45c06e0e68948p-85;
    }
}

// sin(whole pi + r), `whole` an integer and `rounded` that integer above kRounder: odd ones turn the sign.
Doubles SineWithin(Doubles phase, Doubles halves, Doubles rounded) {
    return Doubles(Bits(SineOfReduced(Reduce(phase, halves))) ^ (Bits(rounded) << 63));
}

// Sine and cosine of |phase| <= kLargestPhase, each within 2^-50.5: 2^-52.3 of the reduction (half a spacing for each
// difference, times the cosine of what is left), 2^-52.3 of the polynomial and 2^-52 of the rounding of its terms. In
// units of itself, the sine is within 2^-49.4.
Doubles Sine(Doubles phase) {
    const Doubles rounded = MultiplyAdd(phase, All(kInversePi), All(kRounder));
    return SineWithin(phase, rounded - kRounder, rounded);
}
Doubles Cosine(Doubles phase) {
    const Doubles rounded = (phase * kInversePi + 0.5) + kRounder;
    return SineWithin(phase, (rounded - kRounder) - 0.5, rounded);
}

// How far a sample that was computed from its own phase may lie from the C library's before narrowing, in units of
// itself: 2^-49.2 here and 2^-52 there (a unit in the last place of the sine, half of one of the product).
constexpr double kUncertaintyOfItself = 0x1p-48;

// Samples narrowed; `uncertain` gathers whether one lies so near the middle between two floats that the C library's may
// lie on its other side.
Floats Narrow(Doubles value, Flags& uncertain) {
#if defined(VECTOR_COMPARES_WIDE)
    // In units of the last place of a double, the middle is at 2^28 and the uncertainty 32 at most.
    constexpr std::int64_t kMiddle = std::int64_t{1} << 28;
    constexpr std::int64_t kMost = 32;
    static_assert(kMost == kUncertaintyOfItself * 0x1p+53);
    uncertain |= HaveNone(Bits(value) + (kMiddle + kMost), (2 * kMiddle - 1) & ~(2 * kMost - 1));
    return __builtin_convertvector(value, Floats);
#else
    const Floats low = __builtin_convertvector(value * (1.0 - kUncertaintyOfItself), Floats);
    const Floats high = __builtin_convertvector(value * (1.0 + kUncertaintyOfItself), Floats);
    uncertain |= low != high;
    return low;
#endif
}

// Phases from `phase` on, `count` (1 to kLanes) of them added one by one; moves on to the one after the last.
Doubles AddOneByOne(double& phase, double step, int count) {
    Doubles phases = All(phase);
    for (int lane = 0; lane < count; ++lane) {
        phases[lane] = phase;
        phase += step;
    }
    return phases;
}

double OfPhases(double firstPhase, double step, double amplitude, float* out, long long count) {
    Flags uncertain = {};
    double phase = firstPhase;
    const auto narrow = [amplitude, &uncertain](Doubles phases) { return Narrow(Sine(phases) * amplitude, uncertain); };
    for (long long done = 0; done < count;) {
        const Stretch stretch = FindStretch(phase, step, count - done);
        if (stretch.count >= kLanes) {
            const long long even = stretch.count / kLanes * kLanes;
            Doubles phases = MultiplyAdd(LaneNumbers(), All(stretch.increment), All(phase));
            for (long long end = done + even; done < end; done += kLanes) {
                Store(out + done, narrow(phases));
                phases += kLanes * stretch.increment;
            }
            phase = (phase + static_cast<double>(even - 1) * stretch.increment) + step;
        } else if (count - done >= kLanes) {
            Store(out + done, narrow(AddOneByOne(phase, step, kLanes)));
            done += kLanes;
        } else {
            const int left = static_cast<int>(count - done);
            float last[kLanes];  // NOLINT(*-avoid-c-arrays)
            Store(last, narrow(AddOneByOne(phase, step, left)));
            for (int i = 0; i < left; ++i) {
                out[done + i] = last[i];
            }
            done = count;
        }
    }
    if (IsAny(uncertain)) {
        for (long long i = 0; i < count; ++i) {
            out[i] = PlainSample(firstPhase, amplitude);
            firstPhase += step;
        }
    }
    return phase;
}

// How far a sample of a stretch may lie from the C library's before narrowing, in units of the amplitude: 2^-48.9 here
// (in sin a cos b + cos a sin b the errors of a and of b each count sqrt(2) times, and there are three
// roundings) and 2^-52 there.
constexpr double kUncertainty = 0x1p-48;

Doubles UncertaintyOf(double amplitude) {
    return All(kUncertainty * Magnitude(amplitude));
}

// Samples narrowed from both ends of the range that they may lie in. Where the two ends give the same
// float, so does everything between them. Returns the bits that differ.
FloatBits NarrowBothEnds(Doubles value, Doubles uncertainty, float* low, float* high) {
    const Floats lower = __builtin_convertvector(value - uncertainty, Floats);
    const Floats upper = __builtin_convertvector(value + uncertainty, Floats);
    Store(low, lower);
    Store(high, upper);
    return FloatBits(lower) ^ FloatBits(upper);
}

template <int kCount>
bool AreSame(const float* a, const float* b) {
    return __builtin_memcmp(a, b, kCount * sizeof(float)) == 0;
}

// Computes those of the first `count` samples anew whose ends differ. The phase of sample i is phases(i).
template <class Phases>
void Settle(float* low, const float* high, double amplitude, int count, Phases phases) {
    for (int i = 0; i < count; ++i) {
        if (!AreSame<1>(low + i, high + i)) {
            low[i] = PlainSample(phases(i), amplitude);
        }
    }
}

void CopyFloats(const float* from, float* to, int count) {
    __builtin_memcpy(to, from, static_cast<std::size_t>(count) * sizeof(float));
}

// Sines and cosines of first + i * step, times a factor, i < count and up to the next whole register.
void Rotate(double first, double step, double factor, int count, double* sines, double* cosines) {
    Doubles index = LaneNumbers();
    for (int i = 0; i < count; i += kLanes) {
        const Doubles phase = first + index * step;
        Store(sines + i, Sine(phase) * factor);
        Store(cosines + i, Cosine(phase) * factor);
        index += static_cast<double>(kLanes);
    }
}

// Without its last seven bits, a step times an index below kBlock is exact.
double WithoutLastBits(double step) {
    return __builtin_bit_cast(double, __builtin_bit_cast(std::int64_t, step) & ~std::int64_t{0x7F});
}

void MakeTurns(double step, Turns* turns) {
    turns->step = WithoutLastBits(step);
    Rotate(0.0, turns->step, 1.0, kBlock, turns->sines, turns->cosines);
}

// The same turns for a step that differs by so little that sine and cosine go on straight: the square of
// the last turn's difference, over two, is below 2^-54.
constexpr double kStraight = 0x1p-27;

void Adjust(const Turns* from, double step, Turns* turns) {
    const double difference = step - from->step;
    if (!(Magnitude(difference) * kBlock < kStraight)) {
        Rotate(0.0, step, 1.0, kBlock, turns->sines, turns->cosines);
        return;
    }
    Doubles index = LaneNumbers();
    for (int i = 0; i < kBlock; i += kLanes) {
        const Doubles angle = index * difference;
        const Doubles sine = Load(from->sines + i);
        const Doubles cosine = Load(from->cosines + i);
        Store(turns->sines + i, sine + angle * cosine);
        Store(turns->cosines + i, cosine - angle * sine);
        index += static_cast<double>(kLanes);
    }
}

// sin(a + b) = sin a cos b + cos a sin b: a, the first phase of each block, is computed for kBlock blocks
// at a time; b are the turns, the same for all blocks.
void OfStretch(const Turns* waveTurns, double phase, double increment, double amplitude, float* out, long long count) {
    const Doubles uncertainty = UncertaintyOf(amplitude);
    Turns turns;  // NOLINT(*-member-init): Adjust writes the table
    Adjust(waveTurns, increment, &turns);
    double sines[kBlock];    // NOLINT(*-avoid-c-arrays)
    double cosines[kBlock];  // NOLINT(*-avoid-c-arrays)
    for (long long first = 0; first < count; first += kBlock) {
        const int block = static_cast<int>(first / kBlock % kBlock);
        if (block == 0) {
            Rotate(phase + static_cast<double>(first) * increment, increment * kBlock, amplitude,
                   BlocksOf(count - first), sines, cosines);
        }
        const int samples = count - first < kBlock ? static_cast<int>(count - first) : kBlock;
        float last[kBlock];  // NOLINT(*-avoid-c-arrays)
        float high[kBlock];  // NOLINT(*-avoid-c-arrays)
        float* const low = samples == kBlock ? out + first : last;
        const double sine = sines[block];
        const double cosine = cosines[block];
        FloatBits difference = {};
        for (int i = 0; i < kBlock; i += kLanes) {
            const Doubles value = MultiplyAdd(All(sine), Load(turns.cosines + i), cosine * Load(turns.sines + i));
            difference |= NarrowBothEnds(value, uncertainty, low + i, high + i);
        }
        if (IsAny(difference)) {
            Settle(low, high, amplitude, samples,
                   [phase, increment, first](int i) { return phase + static_cast<double>(first + i) * increment; });
        }
        if (low == last) {
            CopyFloats(last, out + first, samples);
        }
    }
}

}  // namespace

const Kernels kKernels = {.ofPhases = OfPhases,
                          .turns = MakeTurns,
                          .ofStretch = OfStretch,
                          .shortestStretch = kMultipliesAndAddsAtOnce ? 256 : kBlock};

}  // namespace sine::VECTOR_VARIANT
