#include "Tests/Src/VectorPrimitives/VectorTest.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

// Lengths on both sides of every size at which a variant changes its way, again against the plain loop.

using test::Arena;

namespace {

constexpr float kFactor = 0.7F;

constexpr int kLengths[] = {1023, 4095,
                            // 32 KiB: the large form of the copy
                            8191, 8192, 8193,
                            // products that 128-bit registers stream
                            131'071, 131'072, 131'079, 131'080, 131'087,
                            // 2 MiB: the large form of the zero
                            524'287, 524'288, 524'289,
                            // products that wider registers stream, the last with a head and a tail
                            4'194'303, 4'194'304, 4'194'320, 4'194'336, 4'194'383};

// Floats past a 64-byte boundary, of the source and the destination: streamed, streamed behind a head,
// never streamed.
constexpr std::pair<std::size_t, std::size_t> kAlignments[] = {{0, 0}, {5, 5}, {1, 0}, {2, 7}};

class LargeBuffers : public test::VariantTest {
protected:
    template <class Primitive, class Plain>
    void Compare(Primitive primitive, Plain plain) {
        for (const int len : kLengths) {
            const auto count = static_cast<std::size_t>(len);
            Arena source(count);
            test::WriteEveryKindOfFloat(source.Memory());
            Arena actual(count);
            Arena expected(count);
            for (const auto& [from, to] : kAlignments) {
                actual.Reset();
                expected.Reset();
                ASSERT_EQ(primitive(source.At(from), actual.At(to), len), ippStsNoErr);
                plain(source.At(from), expected.At(to), len);
                ASSERT_TRUE(actual.SameBits(expected)) << len << " floats, source " << from << " and destination " << to
                                                       << " floats past a 64-byte boundary";
            }
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Variants, LargeBuffers, testing::ValuesIn(test::kVariants), test::VariantName);

TEST_P(LargeBuffers, AreCopied) {
    Compare([this](const float* source, float* destination, int len) { return Copy(source, destination, len); },
            [](const float* source, float* destination, int len) {
                std::memcpy(destination, source, static_cast<std::size_t>(len) * sizeof(float));
            });
}

TEST_P(LargeBuffers, AreZeroed) {
    Compare([this](const float*, float* destination, int len) { return Zero(destination, len); },
            [](const float*, float* destination, int len) {
                std::memset(destination, 0, static_cast<std::size_t>(len) * sizeof(float));
            });
}

TEST_P(LargeBuffers, AreMultiplied) {
    Compare([this](const float* source, float* destination,
                   int len) { return Multiply(source, kFactor, destination, len); },
            [](const float* source, float* destination, int len) {
                test::PlainMultiply(source, kFactor, destination, len);
            });
}

TEST_P(LargeBuffers, AreMultipliedInPlace) {
    Compare(
        [this](const float* source, float* destination, int len) {
            std::memcpy(destination, source, static_cast<std::size_t>(len) * sizeof(float));
            return Multiply(destination, kFactor, destination, len);
        },
        [](const float* source, float* destination, int len) {
            test::PlainMultiply(source, kFactor, destination, len);
        });
}

}  // namespace
