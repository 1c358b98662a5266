#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <immintrin.h>

/// The registers that PackingVector.cpp is compiled for, PACKING_BYTES wide: 16, also when nothing is said,
/// or 32. Only for that file.
///
/// Everything is static. An inline function would be shared between the instruction levels, and an old
/// processor could end up in code made for a new one.

#if !defined(PACKING_BYTES)
#define PACKING_BYTES 16
#endif

#if PACKING_BYTES == 16

using Floats = __m128;
using Integers = __m128i;

static inline Floats Load(const float* from) {
    return _mm_loadu_ps(from);
}
static inline Integers Bits(Floats value) {
    return _mm_castps_si128(value);
}
static inline Floats Scaled(Floats value, float scale) {
    return _mm_mul_ps(value, _mm_set1_ps(scale));
}
static inline Floats NumbersOnly(Floats value) {
    return _mm_and_ps(value, _mm_cmpord_ps(value, value));
}
static inline Floats Clipped(Floats value, float lowest, float highest) {
    return _mm_max_ps(_mm_min_ps(value, _mm_set1_ps(highest)), _mm_set1_ps(lowest));
}
static inline Integers Reaches(Floats value, float limit) {
    return _mm_castps_si128(_mm_cmpge_ps(value, _mm_set1_ps(limit)));
}
static inline Integers Rounded(Floats value) {
    return _mm_cvtps_epi32(value);
}
static inline Integers Xor(Integers a, Integers b) {
    return _mm_xor_si128(a, b);
}
// The lower three bytes of each integer, twelve side by side; four bytes of 0 behind.
static inline Integers Squeezed(Integers a) {
    const __m128i first = _mm_and_si128(a, _mm_set1_epi64x(0x0000000000FFFFFF));
    const __m128i second = _mm_and_si128(_mm_srli_epi64(a, 8), _mm_set1_epi64x(0x0000FFFFFF000000));
    const __m128i pairs = _mm_or_si128(first, second);
    return _mm_or_si128(_mm_move_epi64(pairs), _mm_slli_si128(_mm_srli_si128(pairs, 8), 6));
}
// Of each lane: its lower or upper two integers, one of each register in turn.
static inline Integers LowPairs(Integers a, Integers b) {
    return _mm_unpacklo_epi32(a, b);
}
static inline Integers HighPairs(Integers a, Integers b) {
    return _mm_unpackhi_epi32(a, b);
}
// Of each lane: a half of the one register and a half of the other, side by side.
static inline Integers LowHalves(Integers a, Integers b) {
    return _mm_unpacklo_epi64(a, b);
}
static inline Integers HighHalves(Integers a, Integers b) {
    return _mm_unpackhi_epi64(a, b);
}
static inline Integers LowAndHighHalves(Integers a, Integers b) {
    return _mm_castpd_si128(_mm_shuffle_pd(_mm_castsi128_pd(a), _mm_castsi128_pd(b), 0b10));
}
static inline Integers Narrowed(Integers a, Integers b) {
    return _mm_packs_epi32(a, b);
}
static constexpr int kLanes = 1;
static inline __m128i Lane(Integers a, int /*lane*/) {
    return a;
}

#else

using Floats = __m256;
using Integers = __m256i;

static inline Floats Load(const float* from) {
    return _mm256_loadu_ps(from);
}
static inline Integers Bits(Floats value) {
    return _mm256_castps_si256(value);
}
static inline Floats Scaled(Floats value, float scale) {
    return _mm256_mul_ps(value, _mm256_set1_ps(scale));
}
static inline Floats NumbersOnly(Floats value) {
    return _mm256_and_ps(value, _mm256_cmp_ps(value, value, _CMP_ORD_Q));
}
static inline Floats Clipped(Floats value, float lowest, float highest) {
    return _mm256_max_ps(_mm256_min_ps(value, _mm256_set1_ps(highest)), _mm256_set1_ps(lowest));
}
static inline Integers Reaches(Floats value, float limit) {
    return _mm256_castps_si256(_mm256_cmp_ps(value, _mm256_set1_ps(limit), _CMP_GE_OQ));
}
static inline Integers Rounded(Floats value) {
    return _mm256_cvtps_epi32(value);
}
static inline Integers Xor(Integers a, Integers b) {
    return _mm256_xor_si256(a, b);
}
static inline Integers Squeezed(Integers a) {
    const __m128i bytes = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    return _mm256_shuffle_epi8(a, _mm256_broadcastsi128_si256(bytes));
}
static inline Integers LowPairs(Integers a, Integers b) {
    return _mm256_unpacklo_epi32(a, b);
}
static inline Integers HighPairs(Integers a, Integers b) {
    return _mm256_unpackhi_epi32(a, b);
}
static inline Integers LowHalves(Integers a, Integers b) {
    return _mm256_unpacklo_epi64(a, b);
}
static inline Integers HighHalves(Integers a, Integers b) {
    return _mm256_unpackhi_epi64(a, b);
}
static inline Integers LowAndHighHalves(Integers a, Integers b) {
    return _mm256_castpd_si256(_mm256_shuffle_pd(_mm256_castsi256_pd(a), _mm256_castsi256_pd(b), 0b1010));
}
static inline Integers Narrowed(Integers a, Integers b) {
    return _mm256_packs_epi32(a, b);
}
static constexpr int kLanes = 2;
static inline __m128i Lane(Integers a, int lane) {
    return lane == 0 ? _mm256_castsi256_si128(a) : _mm256_extracti128_si256(a, 1);
}

#endif

static inline void Store(std::uint8_t* to, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
}
static inline void StoreHalf(std::uint8_t* to, __m128i value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), value);
}
