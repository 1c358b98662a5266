#include "Src/ToneGenerator/Sine/SineKernels.h"

#include "Src/ToneGenerator/Sine/Blocks.h"
#include "Src/ToneGenerator/Sine/PlainSine.h"

#include <cstddef>
#include <cstdint>

// One instruction level of the sines: compiled once for each, with
//   VECTOR_VARIANT  the level's name (Host/Interface/Core/VectorLevels.h), or portable
//   VECTOR_BYTES    the width of its registers; 16 when nothing is said
// Only the table at the end has a name outside this file, and no header with inline functions comes in:
// code of one level must never serve another.

#if !defined(VECTOR_BYTES)
#define VECTOR_BYTES 16
#endif

namespace sine::VECTOR_VARIANT {

namespace {

constexpr int kLanes = VECTOR_BYTES / sizeof(double);
using Doubles [[gnu::vector_size(VECTOR_BYTES)]] = double;
using Bits [[gnu::vector_size(VECTOR_BYTES)]] = std::int64_t;
using Floats [[gnu::vector_size(VECTOR_BYTES / 2)]] = float;
using FloatBits [[gnu::vector_size(VECTOR_BYTES / 2)]] = std::int32_t;
static_assert(kBlock % kLanes == 0);

Doubles Load(const double* from) {
    Doubles value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}
void Store(double* to, Doubles value) {
    __builtin_memcpy(to, &value, sizeof value);
}
void Store(float* to, Floats value) {
    __builtin_memcpy(to, &value, sizeof value);
}

// pi in three parts. Products of the first two with multiples of one half below 2^24 are exact.
constexpr double kPiHigh = 0x1.921fb54p+1;
constexpr double kPiMiddle = 0x1.10b4610p-29;
constexpr double kPiLow = 0x1.a62633145c06ep-57;
constexpr double kInversePi = 0x1.45f306dc9c883p-2;

// A double of this size counts in ones: adding it rounds to the nearest integer, whose last bit comes to
// stand last.
constexpr double kRounder = 0x1.8p+52;

consteval double Factorial(int n) {
    return n == 0 ? 1.0 : n * Factorial(n - 1);
}

// sin r for |r| < 1.5709: the Taylor series up to r^19. The next term is below 2^-51.
Doubles SineOfReduced(Doubles r) {
    const Doubles square = r * r;
    Doubles sum = square * (-1.0 / Factorial(19)) + (1.0 / Factorial(17));
    sum = sum * square + (-1.0 / Factorial(15));
    sum = sum * square + (1.0 / Factorial(13));
    sum = sum * square + (-1.0 / Factorial(11));
    sum = sum * square + (1.0 / Factorial(9));
    sum = sum * square + (-1.0 / Factorial(7));
    sum = sum * square + (1.0 / Factorial(5));
    sum = sum * square + (-1.0 / Factorial(3));
    return r + r * square * sum;
}

// sin(whole pi + r), `whole` an integer and `rounded` that integer above kRounder: odd ones turn the sign.
Doubles SineWithin(Doubles phase, Doubles halves, Doubles rounded) {
    const Doubles r = ((phase - halves * kPiHigh) - halves * kPiMiddle) - halves * kPiLow;
    return Doubles(Bits(SineOfReduced(r)) ^ (Bits(rounded) << 63));
}

// Sine and cosine of |phase| <= kLargestPhase, each within 2^-50.5: 2^-52.9 of the reduction's last two
// subtractions (half a spacing each, times the cosine of what is left), 2^-51.8 of the series' end and
// 2^-52 of the rounding of its terms.
Doubles Sine(Doubles phase) {
    const Doubles rounded = phase * kInversePi + kRounder;
    return SineWithin(phase, rounded - kRounder, rounded);
}
Doubles Cosine(Doubles phase) {
    const Doubles rounded = (phase * kInversePi + 0.5) + kRounder;
    return SineWithin(phase, (rounded - kRounder) - 0.5, rounded);
}

// How far a sample before narrowing may lie from the C library's, in units of the amplitude: 2^-48.9 here
// (in sin a cos b + cos a sin b the errors of a and of b each count sqrt(2) times, and there are three
// roundings) and 2^-52 there (a unit in the last place of the sine, half of one of the product).
constexpr double kUncertainty = 0x1p-48;

double Magnitude(double value) {
    return value < 0.0 ? -value : value;
}

Doubles UncertaintyOf(double amplitude) {
    return Doubles{} + kUncertainty * Magnitude(amplitude);
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

// Computes those of the first `count` samples anew whose ends differ; `difference` says if there are any
// in the block. The phase of sample i is phases(i).
template <class Phases>
void Settle(FloatBits difference, float* low, const float* high, double amplitude, int count, Phases phases) {
    std::int32_t any = 0;
    for (int lane = 0; lane < kLanes; ++lane) {
        any |= difference[lane];
    }
    // Two at a time: whole registers were written, so the one after an odd count is there too.
    for (int pair = 0; any != 0 && pair < count; pair += 2) {
        if (AreSame<2>(low + pair, high + pair)) {
            continue;
        }
        for (int i = pair; i < pair + 2 && i < count; ++i) {
            if (!AreSame<1>(low + i, high + i)) {
                low[i] = PlainSample(phases(i), amplitude);
            }
        }
    }
}

void CopyFloats(const float* from, float* to, int count) {
    __builtin_memcpy(to, from, static_cast<std::size_t>(count) * sizeof(float));
}

void OfPhases(const double* phases, double amplitude, float* out, int count) {
    float low[kBlock];   // NOLINT(*-avoid-c-arrays)
    float high[kBlock];  // NOLINT(*-avoid-c-arrays)
    const Doubles uncertainty = UncertaintyOf(amplitude);
    FloatBits difference = {};
    for (int i = 0; i < count; i += kLanes) {
        difference |= NarrowBothEnds(Sine(Load(phases + i)) * amplitude, uncertainty, low + i, high + i);
    }
    Settle(difference, low, high, amplitude, count, [phases](int i) { return phases[i]; });
    CopyFloats(low, out, count);
}

Doubles LaneNumbers() {
    Doubles numbers = {};
    for (int lane = 0; lane < kLanes; ++lane) {
        numbers[lane] = lane;
    }
    return numbers;
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
            const Doubles value = sine * Load(turns.cosines + i) + cosine * Load(turns.sines + i);
            difference |= NarrowBothEnds(value, uncertainty, low + i, high + i);
        }
        Settle(difference, low, high, amplitude, samples,
               [phase, increment, first](int i) { return phase + static_cast<double>(first + i) * increment; });
        if (low == last) {
            CopyFloats(last, out + first, samples);
        }
    }
}

}  // namespace

const Kernels kKernels = {.ofPhases = OfPhases, .turns = MakeTurns, .ofStretch = OfStretch};

}  // namespace sine::VECTOR_VARIANT
