#pragma once

#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/VectorPrimitives/VectorKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace test {

/// What serves a test: a variant behind the public entries, or the portable kernels, which no index of
/// this machine names.
struct Variant {
    const char* name;
    std::int32_t index;
    int registerBytes;
};
inline constexpr std::int32_t kPortable = kVectorVariantCount;
#define VECTOR_ROW(level, enumerator, bytes, ...) {#level, enumerator, bytes},
inline constexpr Variant kVariants[] = {VECTOR_LEVELS(VECTOR_ROW){"portable", kPortable, sizeof(float)}};
#undef VECTOR_ROW

inline void PrintTo(const Variant& variant, std::ostream* out) {
    *out << variant.name;
}

/// Runs a test with each variant in turn, forced through the dispatch index. A variant that this
/// processor does not run is skipped.
class VariantTest : public testing::TestWithParam<Variant> {
protected:
    void SetUp() override {
        ippSafeInit();
        const auto& [name, index, registerBytes] = GetParam();
        if (index == kPortable) {
            mPrimitives = vectorkernels::portable::kKernels;
        } else if (index > ippJumpIndexForMergedLibs) {
            GTEST_SKIP() << "this processor does not run " << name;
        } else {
            ippJumpIndexForMergedLibs = index;
        }
    }
    void TearDown() override { ippSafeInit(); }

    [[nodiscard]] const vectorkernels::Kernels& Primitives() const { return mPrimitives; }

    IppStatus Copy(const float* source, float* destination, int len) const {
        return mPrimitives.copy(source, destination, len);
    }
    IppStatus Zero(float* destination, int len) const { return mPrimitives.zero(destination, len); }
    IppStatus Multiply(const float* source, float val, float* destination, int len) const {
        return mPrimitives.multiply(source, val, destination, len);
    }

private:
    vectorkernels::Kernels mPrimitives = {.copy = ippsCopy_32f, .zero = ippsZero_32f, .multiply = ippsMulC_32f};
};

inline std::string VariantName(const testing::TestParamInfo<Variant>& info) {
    return info.param.name;
}

/// The product as the language defines it, one element after the other.
[[gnu::noinline]] inline void PlainMultiply(const float* source, float val, float* destination, int len) {
    for (int i = 0; i < len; ++i) {
        destination[i] = source[i] * val;
    }
}

inline float FromBits(std::uint32_t bits) {
    return std::bit_cast<float>(bits);
}

/// Writes floats of every kind, the odd ones every third element: zeros of both signs, denormals,
/// infinities, the largest and smallest normals, NaNs quiet and signalling with payloads.
inline void WriteEveryKindOfFloat(std::span<float> floats) {
    static constexpr std::uint32_t kOdd[] = {0x00000000, 0x80000000, 0x00000001, 0x807FFFFF, 0x7F800000, 0xFF800000,
                                             0x7F7FFFFF, 0x00800000, 0x7FC12345, 0xFFC54321, 0x7F812345, 0xFFA00001};
    for (std::size_t i = 0; i < floats.size(); ++i) {
        if (i % 3 == 0) {
            std::memcpy(&floats[i], &kOdd[i / 3 % std::size(kOdd)], sizeof(float));
        } else {
            floats[i] = (static_cast<float>(i % 1009) - 504.0F) / 7.0F;
        }
    }
}

/// Memory for `capacity` floats at up to 15 floats past a 64-byte boundary, between guards, holding a
/// tagged NaN until written. Two of them are compared whole, so that a write anywhere shows.
class Arena {
public:
    explicit Arena(std::size_t capacity)
        : mStorage(capacity + kLine + 2 * kGuard + kLine),
          mFirst((kLine - reinterpret_cast<std::uintptr_t>(mStorage.data()) / sizeof(float) % kLine) % kLine),
          mFloats(capacity + kLine + 2 * kGuard) {
        Reset();
    }

    /// The float `misalignment` floats (0 to 15) past a 64-byte boundary.
    [[nodiscard]] float* At(std::size_t misalignment) { return mStorage.data() + mFirst + kGuard + misalignment; }

    [[nodiscard]] std::span<float> Memory() { return {mStorage.data() + mFirst, mFloats}; }

    /// Forgets what was written.
    void Reset() { std::fill_n(Memory().data(), mFloats, FromBits(0x7FA5C3E1)); }

    [[nodiscard]] bool SameBits(Arena& other) {
        return std::memcmp(Memory().data(), other.Memory().data(), Memory().size_bytes()) == 0;
    }

private:
    static constexpr std::size_t kLine = 16;
    static constexpr std::size_t kGuard = 64;  // floats; a multiple of a line

    std::vector<float> mStorage;
    std::size_t mFirst;
    std::size_t mFloats;
};

}  // namespace test
