#pragma once

#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

/// The register that the including source is compiled for, VECTOR_BYTES wide: 16, 32 or 64, or one float
/// when nothing is said. Only for VectorKernels.cpp.
///
/// Everything is static. An inline function would be shared with the other instruction levels, and the
/// oldest processor could end up in code made for the newest.

#if !defined(VECTOR_BYTES)

using Register = float;
static inline Register Load(const float* from) {
    return *from;
}
static inline void Store(float* to, Register value) {
    *to = value;
}
static inline void Stream(float* to, Register value) {
    *to = value;
}
static inline void EndStreaming() {}

#elif defined(__aarch64__)

static_assert(VECTOR_BYTES == 16);

using Register = float32x4_t;
static inline Register Load(const float* from) {
    return vld1q_f32(from);
}
static inline void Store(float* to, Register value) {
    vst1q_f32(to, value);
}
/// Left to the processor, which tells by itself when stores are of whole lines.
static inline void Stream(float* to, Register value) {
    vst1q_f32(to, value);
}
static inline void EndStreaming() {}

#else

#if VECTOR_BYTES == 16

using Register = __m128;
static inline Register Load(const float* from) {
    return _mm_loadu_ps(from);
}
static inline void Store(float* to, Register value) {
    _mm_storeu_ps(to, value);
}
static inline void Stream(float* to, Register value) {
    _mm_stream_ps(to, value);
}

#elif VECTOR_BYTES == 32

using Register = __m256;
static inline Register Load(const float* from) {
    return _mm256_loadu_ps(from);
}
static inline void Store(float* to, Register value) {
    _mm256_storeu_ps(to, value);
}
static inline void Stream(float* to, Register value) {
    _mm256_stream_ps(to, value);
}

#elif VECTOR_BYTES == 64

#define VECTOR_HAS_MASKS
using Register = __m512;
static inline Register Load(const float* from) {
    return _mm512_loadu_ps(from);
}
static inline void Store(float* to, Register value) {
    _mm512_storeu_ps(to, value);
}
static inline void Stream(float* to, Register value) {
    _mm512_stream_ps(to, value);
}

/// The first `count` lanes, 0 < count < 16. The other lanes are neither read nor written.
static inline __mmask16 FirstLanes(std::int64_t count) {
    return static_cast<__mmask16>((1U << static_cast<unsigned>(count)) - 1U);
}
static inline Register LoadFirst(const float* from, std::int64_t count) {
    return _mm512_maskz_loadu_ps(FirstLanes(count), from);
}
static inline void StoreFirst(float* to, Register value, std::int64_t count) {
    _mm512_mask_storeu_ps(to, FirstLanes(count), value);
}

#else
#error "VECTOR_BYTES is 16, 32 or 64"
#endif

/// Makes streamed values visible to other threads in the order of the program.
static inline void EndStreaming() {
    _mm_sfence();
}

#endif
