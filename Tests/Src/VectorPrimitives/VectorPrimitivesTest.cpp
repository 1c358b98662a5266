#include "Src/VectorPrimitives/VectorPrimitives.h"
#include "Tests/Src/VectorPrimitives/VectorTest.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <limits>

using test::FromBits;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr int kLowest = std::numeric_limits<int>::min();

class VectorPrimitives : public test::VariantTest {};
INSTANTIATE_TEST_SUITE_P(Variants, VectorPrimitives, testing::ValuesIn(test::kVariants), test::VariantName);

std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

TEST_P(VectorPrimitives, RefuseANullPointerBeforeTheyLookAtTheLength) {
    std::array<float, 2> memory = {3.0F, 4.0F};
    for (const int len : {2, 0, -1, kLowest}) {
        EXPECT_EQ(Copy(nullptr, memory.data(), len), ippStsNullPtrErr);
        EXPECT_EQ(Copy(memory.data(), nullptr, len), ippStsNullPtrErr);
        EXPECT_EQ(Zero(nullptr, len), ippStsNullPtrErr);
        for (const float val : {2.0F, 1.0F, 0.0F}) {
            EXPECT_EQ(Multiply(nullptr, val, memory.data(), len), ippStsNullPtrErr);
            EXPECT_EQ(Multiply(memory.data(), val, nullptr, len), ippStsNullPtrErr);
        }
    }
    EXPECT_EQ(memory, (std::array{3.0F, 4.0F}));
}

TEST_P(VectorPrimitives, RefuseALengthOfZeroOrLessAndWriteNothing) {
    const std::array<float, 2> source = {1.0F, 2.0F};
    std::array<float, 2> memory = {3.0F, 4.0F};
    for (const int len : {0, -1, kLowest}) {
        EXPECT_EQ(Copy(source.data(), memory.data(), len), ippStsSizeErr);
        EXPECT_EQ(Zero(memory.data(), len), ippStsSizeErr);
        for (const float val : {2.0F, 1.0F, 0.0F}) {
            EXPECT_EQ(Multiply(source.data(), val, memory.data(), len), ippStsSizeErr);
        }
    }
    EXPECT_EQ(memory, (std::array{3.0F, 4.0F}));
}

TEST(IppStatus, HasTheValuesThatCallersCompareWith) {
    EXPECT_EQ(static_cast<int>(ippStsNoErr), 0);
    EXPECT_EQ(static_cast<int>(ippStsSizeErr), -6);
    EXPECT_EQ(static_cast<int>(ippStsNullPtrErr), -8);
}

// A signalling NaN times 1 would come out quiet, so its bits tell a copy from a product.
TEST_P(VectorPrimitives, MultiplyByOneCopiesBitForBit) {
    const std::array<float, 5> source = {FromBits(0x7F812345), FromBits(0xFFC54321), kInfinity, -0.0F, 0.25F};
    std::array<float, 5> product = {};
    EXPECT_EQ(Multiply(source.data(), 1.0F, product.data(), 5), ippStsNoErr);
    EXPECT_EQ(Bits(product[0]), 0x7F812345U);
    EXPECT_EQ(Bits(product[1]), 0xFFC54321U);
    EXPECT_EQ(product[2], kInfinity);
    EXPECT_EQ(Bits(product[3]), 0x80000000U);
    EXPECT_EQ(product[4], 0.25F);
}

// Inf * 0 and NaN * 0 would be NaN, and -3 * 0 would be -0.
TEST_P(VectorPrimitives, MultiplyByZeroOfEitherSignWritesPlusZeroWhateverTheSource) {
    const std::array<float, 4> source = {FromBits(0x7FC12345), kInfinity, -kInfinity, -3.0F};
    for (const float zero : {0.0F, -0.0F}) {
        std::array<float, 4> product = {7.0F, 7.0F, 7.0F, 7.0F};
        EXPECT_EQ(Multiply(source.data(), zero, product.data(), 4), ippStsNoErr);
        for (const float value : product) {
            EXPECT_EQ(Bits(value), 0U);
        }
    }
}

TEST_P(VectorPrimitives, MultiplyRoundsEachProductOnceAndKeepsDenormals) {
    const std::array<float, 6> source = {3.0F, -0.0F, FromBits(0x00800000), FromBits(0x00000003), kInfinity, 1e38F};
    std::array<float, 6> product = {};
    EXPECT_EQ(Multiply(source.data(), 0.5F, product.data(), 6), ippStsNoErr);
    EXPECT_EQ(product[0], 1.5F);
    EXPECT_EQ(Bits(product[1]), 0x80000000U);
    EXPECT_EQ(Bits(product[2]), 0x00400000U);  // half the smallest normal is a denormal
    EXPECT_EQ(Bits(product[3]), 0x00000002U);  // 1.5 units: half-way, to even
    EXPECT_EQ(product[4], kInfinity);
    EXPECT_EQ(Multiply(source.data() + 5, -10.0F, product.data() + 5, 1), ippStsNoErr);
    EXPECT_EQ(product[5], -kInfinity);
}

// Which of two NaNs a processor's product keeps depends on the order of the operands. 47 floats reach the
// wide part of every variant.
TEST_P(VectorPrimitives, MultiplyByNotANumberWritesThatNaNEverywhere) {
    std::vector<float> source(47);
    test::WriteEveryKindOfFloat(source);
    std::vector<float> product(source.size(), 0.0F);
    EXPECT_EQ(Multiply(source.data(), FromBits(0xFF80BEEF), product.data(), 47), ippStsNoErr);
    for (const float value : product) {
        EXPECT_EQ(Bits(value), 0xFFC0BEEFU);  // the same sign and payload, quiet
    }
}

}  // namespace
