#include "Tests/Src/VectorPrimitives/VectorTest.h"

#include <gtest/gtest.h>

#include <cstring>

// Every variant against the plain loop, bit for bit, over every short length and every alignment of both
// buffers. The whole memory is compared, so a float too few or too many shows as well.

using test::Arena;

namespace {

constexpr int kLongest = 300;
constexpr float kFactor = -0.3F;  // makes denormals of the smallest normals, and rounds

class ShortBuffers : public test::VariantTest {
protected:
    // Calls `primitive` and `plain` as (source, destination, len) on memory that holds the same, for every
    // length and alignment.
    template <class Primitive, class Plain>
    void Compare(Primitive primitive, Plain plain) {
        Arena source(kLongest);
        test::WriteEveryKindOfFloat(source.Memory());
        Arena actual(kLongest);
        Arena expected(kLongest);
        for (std::size_t from = 0; from < 16; ++from) {
            for (std::size_t to = 0; to < 16; ++to) {
                for (int len = 1; len <= kLongest; ++len) {
                    actual.Reset();
                    expected.Reset();
                    ASSERT_EQ(primitive(source.At(from), actual.At(to), len), ippStsNoErr);
                    plain(source.At(from), expected.At(to), len);
                    ASSERT_TRUE(actual.SameBits(expected)) << len << " floats, source " << from << " and destination "
                                                           << to << " floats past a 64-byte boundary";
                }
            }
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Variants, ShortBuffers, testing::ValuesIn(test::kVariants), test::VariantName);

TEST_P(ShortBuffers, AreCopiedAtEveryLengthAndAlignment) {
    Compare([this](const float* source, float* destination, int len) { return Copy(source, destination, len); },
            [](const float* source, float* destination, int len) {
                std::memcpy(destination, source, static_cast<std::size_t>(len) * sizeof(float));
            });
}

TEST_P(ShortBuffers, AreZeroedAtEveryLengthAndAlignment) {
    Compare([this](const float*, float* destination, int len) { return Zero(destination, len); },
            [](const float*, float* destination, int len) {
                std::memset(destination, 0, static_cast<std::size_t>(len) * sizeof(float));
            });
}

TEST_P(ShortBuffers, AreMultipliedAtEveryLengthAndAlignment) {
    Compare([this](const float* source, float* destination,
                   int len) { return Multiply(source, kFactor, destination, len); },
            [](const float* source, float* destination, int len) {
                test::PlainMultiply(source, kFactor, destination, len);
            });
}

TEST_P(ShortBuffers, AreMultipliedInPlace) {
    const auto bytes = [](int len) { return static_cast<std::size_t>(len) * sizeof(float); };
    Compare(
        [&](const float* source, float* destination, int len) {
            std::memcpy(destination, source, bytes(len));
            return Multiply(destination, kFactor, destination, len);
        },
        [](const float* source, float* destination, int len) {
            test::PlainMultiply(source, kFactor, destination, len);
        });
}

TEST_P(ShortBuffers, StayTheSameWhenCopiedOntoThemselvesOrMultipliedByOneInPlace) {
    const auto bytes = [](int len) { return static_cast<std::size_t>(len) * sizeof(float); };
    Compare(
        [&](const float* source, float* destination, int len) {
            std::memcpy(destination, source, bytes(len));
            const IppStatus status = Copy(destination, destination, len);
            return status == ippStsNoErr ? Multiply(destination, 1.0F, destination, len) : status;
        },
        [&](const float* source, float* destination, int len) { std::memcpy(destination, source, bytes(len)); });
}

}  // namespace
