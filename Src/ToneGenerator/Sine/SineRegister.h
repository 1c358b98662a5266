#pragma once

#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

/// The registers of doubles that the including source is compiled for, VECTOR_BYTES wide (16 when nothing is said), and
/// what the compiler has no operator for. Only for SineKernels.cpp. Everything is static: an inline function would be
/// shared with the other instruction levels, and the oldest processor could end up in code made for the newest.

#if !defined(VECTOR_BYTES)
#define VECTOR_BYTES 16
#elif defined(__aarch64__)
static_assert(VECTOR_BYTES == 16);
#define VECTOR_IS_NEON
#endif

constexpr int kLanes = VECTOR_BYTES / sizeof(double);
using Doubles [[gnu::vector_size(VECTOR_BYTES)]] = double;
using Bits [[gnu::vector_size(VECTOR_BYTES)]] = std::int64_t;
using Floats [[gnu::vector_size(VECTOR_BYTES / 2)]] = float;
using FloatBits [[gnu::vector_size(VECTOR_BYTES / 2)]] = std::int32_t;

static inline Doubles Load(const double* from) {
    Doubles value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}
static inline void Store(double* to, Doubles value) {
    __builtin_memcpy(to, &value, sizeof value);
}
static inline void Store(float* to, Floats value) {
    __builtin_memcpy(to, &value, sizeof value);
}

/// Whether MultiplyAdd rounds once.
#if VECTOR_BYTES == 64 || (VECTOR_BYTES == 32 && defined(__FMA__)) || defined(VECTOR_IS_NEON)
constexpr bool kMultipliesAndAddsAtOnce = true;
#else
constexpr bool kMultipliesAndAddsAtOnce = false;
#endif

/// a * b + c.
static inline Doubles MultiplyAdd(Doubles a, Doubles b, Doubles c) {
#if VECTOR_BYTES == 64
    return _mm512_fmadd_pd(a, b, c);
#elif VECTOR_BYTES == 32 && defined(__FMA__)
    return _mm256_fmadd_pd(a, b, c);
#elif defined(VECTOR_IS_NEON)
    return vfmaq_f64(c, a, b);
#else
    return a * b + c;
#endif
}

/// Whether integers as wide as a double are compared at once.
#if defined(__AVX2__) || defined(VECTOR_IS_NEON)
#define VECTOR_COMPARES_WIDE
#endif

/// One flag a lane; combined by |.
#if VECTOR_BYTES == 64
using Flags = __mmask8;
static inline bool IsAny(Flags flags) {
    return flags != 0;
}
#elif defined(VECTOR_COMPARES_WIDE)
using Flags = Bits;
#else
using Flags = FloatBits;
#endif
template <class Vector>
static inline bool IsAny(Vector flags) {
    bool any = false;
    for (unsigned lane = 0; lane < sizeof flags / sizeof flags[0]; ++lane) {
        any |= flags[lane] != 0;
    }
    return any;
}

#if defined(VECTOR_COMPARES_WIDE)
/// Which lanes have none of the bits of `mask`.
static inline Flags HaveNone(Bits value, std::int64_t mask) {
#if VECTOR_BYTES == 64
    return _mm512_testn_epi64_mask(__m512i(value), _mm512_set1_epi64(mask));
#else
    return (value & mask) == 0;
#endif
}
#endif

static inline double Magnitude(double value) {
    return value < 0.0 ? -value : value;
}

static inline Doubles LaneNumbers() {
    Doubles numbers = {};
    for (int lane = 0; lane < kLanes; ++lane) {
        numbers[lane] = lane;
    }
    return numbers;
}
