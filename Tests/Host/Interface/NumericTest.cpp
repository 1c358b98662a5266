#include "Host/Interface/Core/Numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace zelcore::numeric;

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

TEST(Numeric, SumsDifferencesAndProductsWrap) {
    EXPECT_EQ(WrappingAdd(kMax, 1), kMin);
    EXPECT_EQ(WrappingSubtract(kMin, 1), kMax);
    EXPECT_EQ(WrappingMultiply(kMax, 2), -2);
    EXPECT_EQ(WrappingMultiply(kMin, -1), kMin);
}

TEST(Numeric, QuotientsRoundDownWhateverTheSigns) {
    EXPECT_EQ(FloorDivide(7, 2), 3);
    EXPECT_EQ(FloorDivide(-7, 2), -4);
    EXPECT_EQ(FloorDivide(7, -2), -4);
    EXPECT_EQ(FloorDivide(-7, -2), 3);
    EXPECT_EQ(FloorDivide(-8, 2), -4);
    EXPECT_EQ(FloorDivide(kMin, 1), kMin);
}

TEST(Numeric, AQuotientByNothingIsZero) {
    EXPECT_EQ(FloorDivide(5, 0), 0);
    EXPECT_EQ(FloorDivide(kMin, 0), 0);
}

TEST(Numeric, TheOneQuotientThatDoesNotFitWraps) {
    EXPECT_EQ(FloorDivide(kMin, -1), kMin);
}

TEST(Numeric, DoublesTruncateTowardsZero) {
    EXPECT_EQ(TruncateToInt64(2.9), 2);
    EXPECT_EQ(TruncateToInt64(-2.9), -2);
    EXPECT_EQ(TruncateToInt64(-9223372036854775808.0), kMin);
    EXPECT_EQ(TruncateToInt64(9223372036854774784.0), 9223372036854774784);
}

TEST(Numeric, DoublesThatDoNotFitBecomeTheMostNegativeValue) {
    EXPECT_EQ(TruncateToInt64(9223372036854775808.0), kMin);
    EXPECT_EQ(TruncateToInt64(-1e300), kMin);
    EXPECT_EQ(TruncateToInt64(std::nan("")), kMin);
    EXPECT_EQ(TruncateToInt64(std::numeric_limits<double>::infinity()), kMin);
}

}  // namespace
