#include "Src/VectorPrimitives/VectorKernels.h"

#include "Host/Interface/Core/ByteKernels.h"
#include "Src/VectorPrimitives/Streaming.h"
#include "Src/VectorPrimitives/VectorRegister.h"

#include <cstdint>

// One instruction level of the primitives: compiled once for each, with
//   VECTOR_VARIANT     the level's name (Host/Interface/Core/VectorLevels.h), or portable
//   VECTOR_BYTES       the width of its registers (VectorRegister.h)
//   VECTOR_LARGE_COPY  the host's byte kernel for copies of 32 KiB and more; without it, the level
//                      copies with its own kernel
// Only the table at the end has a name outside this file, and no header with inline functions comes in:
// code of one level must never serve another.

namespace vectorkernels::VECTOR_VARIANT {

namespace {

// NOLINTNEXTLINE(bugprone-sizeof-expression): a portable register is one float
constexpr std::int64_t kLanes = sizeof(Register) / sizeof(float);
constexpr std::int64_t kStep = 2 * kLanes;            // floats a turn of the main loop
constexpr std::int64_t kFewest = kLanes - 1 + kStep;  // room for a whole step behind any head

// destination[i] = operation(source[i]) for i in [first, end), one by one or under a mask.
template <class Operation>
void TransformFew(const float* source, float* destination, std::int64_t first, std::int64_t end, Operation operation) {
    std::int64_t i = first;
#if defined(VECTOR_HAS_MASKS)
    for (; i + kLanes <= end; i += kLanes) {
        Store(destination + i, operation(Load(source + i)));
    }
    if (i < end) {
        StoreFirst(destination + i, operation(LoadFirst(source + i, end - i)), end - i);
    }
#else
    for (; i < end; ++i) {
        destination[i] = operation(source[i]);
    }
#endif
}

// destination[i] = operation(source[i]) for i < len: a head up to the destination's alignment, whole
// steps, a tail. Steps of more than `streamAbove` floats may be streamed past the caches (Streaming.h).
template <class Operation>
void Transform(const float* source, float* destination, std::int64_t len, std::int64_t streamAbove,
               Operation operation) {
    std::int64_t done = 0;
    if (len >= kFewest) {
        const std::int64_t head = FloatsToBoundary(destination, sizeof(Register));
        TransformFew(source, destination, 0, head, operation);
        const float* const from = source + head;
        float* const to = destination + head;
        const std::int64_t steps = (len - head) / kStep * kStep;
        if (IsStreamed(from, to, steps, streamAbove, sizeof(Register))) {
            for (std::int64_t i = 0; i < steps; i += kStep) {
                Stream(to + i, operation(Load(from + i)));
                Stream(to + i + kLanes, operation(Load(from + i + kLanes)));
            }
            EndStreaming();
        } else {
            for (std::int64_t i = 0; i < steps; i += kStep) {
                Store(to + i, operation(Load(from + i)));
                Store(to + i + kLanes, operation(Load(from + i + kLanes)));
            }
        }
        done = head + steps;
    }
    TransformFew(source, destination, done, len, operation);
}

IppStatus Check(const void* source, const void* destination, int len) {
    if (source == nullptr || destination == nullptr) {
        return ippStsNullPtrErr;
    }
    return len <= 0 ? ippStsSizeErr : ippStsNoErr;
}

#if defined(VECTOR_LARGE_COPY)

constexpr int kBytesPerFloat = sizeof(float);
constexpr int kMostFloats = INT32_MAX / kBytesPerFloat;               // whose bytes an int still counts
constexpr int kChunkFloats = INT32_MAX / 32 * (32 / kBytesPerFloat);  // the most that are whole 32-byte blocks
constexpr int kLargeCopyBytes = 32'768;
constexpr std::int64_t kLargeZeroBytes = 2'097'152;
static_assert(kMostFloats == 536'870'911 && kChunkFloats == 536'870'904);

IppStatus ippsCopy_8u(const Ipp8u* source, Ipp8u* destination, int len) {
    const IppStatus status = Check(source, destination, len);
    if (status == ippStsNoErr) {
        if (len < kLargeCopyBytes) {
            ippCopyBytes_E9(source, destination, len);
        } else {
            VECTOR_LARGE_COPY(source, destination, len);
        }
    }
    return status;
}

void CopyFloats(const float* source, float* destination, int len) {
    const auto* from = reinterpret_cast<const Ipp8u*>(source);
    auto* to = reinterpret_cast<Ipp8u*>(destination);
    constexpr int kChunkBytes = kChunkFloats * kBytesPerFloat;
    while (len > kMostFloats) {
        ippsCopy_8u(from, to, kChunkBytes);
        from += kChunkBytes;
        to += kChunkBytes;
        len -= kChunkFloats;
    }
    ippsCopy_8u(from, to, len * kBytesPerFloat);
}

void ZeroBytes(float* destination, std::int64_t bytes) {
    if (bytes <= kLargeZeroBytes) {
        ippZeroBytes_E9(destination, bytes);
    } else {
        ippZeroBytes(destination, bytes);
    }
}

#else

constexpr std::int64_t kStreamNever = INT64_MAX;

void CopyFloats(const float* source, float* destination, int len) {
    Transform(source, destination, len, kStreamNever, [](auto value) { return value; });
}

void ZeroBytes(float* destination, std::int64_t bytes) {
    ippZeroBytes(destination, bytes);
}

#endif

IppStatus Copy(const Ipp32f* source, Ipp32f* destination, int len) {
    const IppStatus status = Check(source, destination, len);
    if (status == ippStsNoErr) {
        CopyFloats(source, destination, len);
    }
    return status;
}

IppStatus Zero(Ipp32f* destination, int len) {
    const IppStatus status = Check(destination, destination, len);
    if (status == ippStsNoErr) {
        ZeroBytes(destination, static_cast<std::int64_t>(len) * static_cast<std::int64_t>(sizeof(float)));
    }
    return status;
}

bool IsNaN(float value) {
    return value != value;
}

void Fill(float* destination, float value, int len) {
    for (int i = 0; i < len; ++i) {
        destination[i] = value;
    }
}

// A product of two NaNs keeps one of the two, and the compiler chooses which by the order it multiplies
// in. So a NaN constant is not multiplied: every product is that NaN, made quiet by the addition.
IppStatus Multiply(const Ipp32f* source, Ipp32f val, Ipp32f* destination, int len) {
    const IppStatus status = Check(source, destination, len);
    if (status != ippStsNoErr) {
        return status;
    }
    if (val == 1.0F) {
        return Copy(source, destination, len);
    }
    if (val == 0.0F) {
        return Zero(destination, len);
    }
    if (IsNaN(val)) {
        Fill(destination, val + val, len);
    } else {
        Transform(source, destination, len, StreamedAbove(sizeof(Register)), [val](auto value) { return value * val; });
    }
    return status;
}

}  // namespace

const Kernels kKernels = {.copy = Copy, .zero = Zero, .multiply = Multiply};

}  // namespace vectorkernels::VECTOR_VARIANT
