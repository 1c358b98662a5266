#include "Src/ToneGenerator/Sine/PhaseStretch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using sine::FindStretch;
using sine::Stretch;

constexpr double kUlp = 0x1p-52;  // of 1.0
constexpr long long kMany = 100'000;

// The stretch from `phase`, walked by its definition.
testing::AssertionResult IsRepeatedAddition(double phase, double step, const Stretch& stretch) {
    double added = phase;
    for (long long j = 0; j < stretch.count; ++j) {
        if (phase + static_cast<double>(j) * stretch.increment != added) {
            return testing::AssertionFailure()
                   << "at " << j << " of " << stretch.count << " from " << phase << " in steps of " << step;
        }
        added += step;
    }
    return testing::AssertionSuccess();
}

TEST(PhaseStretch, IsRepeatedAdditionOfAnyStepFromAnyPhase) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> exponent(-30.0, 24.0);
    std::uniform_real_distribution<double> stepExponent(-12.0, 0.0);
    long long walked = 0;
    for (int i = 0; i < 20'000; ++i) {
        const double sign = i % 2 == 0 ? 1.0 : -1.0;
        const double phase = sign * std::exp2(exponent(random));
        const double step = phase * std::exp2(stepExponent(random));
        const Stretch stretch = FindStretch(phase, step, 5000);
        ASSERT_LE(stretch.count, 5000);
        ASSERT_TRUE(IsRepeatedAddition(phase, step, stretch));
        walked += std::max(stretch.count, 0LL);
    }
    EXPECT_GT(walked, 500'000);
}

TEST(PhaseStretch, EndsInsideTheBinade) {
    // From 1 in steps of 1/8: 1, 1.125, ... 1.875 lie below 2.
    const Stretch stretch = FindStretch(1.0, 0.125, kMany);
    EXPECT_EQ(stretch.increment, 0.125);
    EXPECT_EQ(stretch.count, 8);
    EXPECT_EQ(FindStretch(-1.0, -0.125, kMany).count, 8);
    EXPECT_EQ(FindStretch(2.0 - 101 * kUlp, kUlp, kMany).count, 101);
    EXPECT_EQ(FindStretch(0.25, 0x1p-10, kMany).count, 256);
    EXPECT_EQ(FindStretch(-0.25, -0x1p-10, kMany).count, 256);
}

TEST(PhaseStretch, HasNoMoreSamplesThanAreWanted) {
    EXPECT_EQ(FindStretch(1.0, 0.125, 3).count, 3);
    EXPECT_EQ(FindStretch(1.0, 0.125, 0).count, 0);
}

TEST(PhaseStretch, IncrementIsTheStepAsItIsRoundedInTheBinade) {
    // From 1 on doubles lie one ulp apart: 0.1 goes to the nearest multiple.
    const Stretch stretch = FindStretch(1.0, 0.1, kMany);
    EXPECT_EQ(stretch.increment, std::round(0.1 / kUlp) * kUlp);
    EXPECT_EQ(stretch.count, 9);
}

TEST(PhaseStretch, OfAStepMidwayBetweenTwoSpacingsDependsOnThePhase) {
    // 2.5 ulp from an even phase rounds to even, 2 ulp, each time.
    const Stretch fromEven = FindStretch(1.0, 2.5 * kUlp, kMany);
    EXPECT_EQ(fromEven.increment, 2 * kUlp);
    EXPECT_EQ(fromEven.count, kMany);
    EXPECT_TRUE(IsRepeatedAddition(1.0, 2.5 * kUlp, fromEven));
    // From an odd one the first addition moves by 3 ulp, to an even phase; the others by 2.
    EXPECT_EQ(FindStretch(1.0 + kUlp, 2.5 * kUlp, kMany).count, 0);
    // 3.5 ulp rounds to 4 from an even phase, to 3 from an odd one.
    EXPECT_EQ(FindStretch(1.0, 3.5 * kUlp, kMany).increment, 4 * kUlp);
    EXPECT_EQ(FindStretch(1.0 + kUlp, 3.5 * kUlp, kMany).count, 0);
}

TEST(PhaseStretch, IsNotKnownTowardsZeroNorAcrossIt) {
    EXPECT_EQ(FindStretch(1.75, -0.125, kMany).count, 0);
    EXPECT_EQ(FindStretch(-1.75, 0.125, kMany).count, 0);
    EXPECT_EQ(FindStretch(0.5, -0.125, kMany).count, 0);
    EXPECT_EQ(FindStretch(-0.5, 0.125, kMany).count, 0);
    EXPECT_EQ(FindStretch(0.0, 0.125, kMany).count, 0);
    EXPECT_EQ(FindStretch(-0.0, -0.125, kMany).count, 0);
}

TEST(PhaseStretch, IsNotKnownWhereNothingMoves) {
    EXPECT_EQ(FindStretch(1.0, 0.0, kMany).count, 0);
    EXPECT_EQ(FindStretch(1.0, 0x1p-60, kMany).count, 0);
    EXPECT_EQ(FindStretch(-1.0, 0.0, kMany).count, 0);
    EXPECT_EQ(FindStretch(-1.0, -0x1p-60, kMany).count, 0);
}

TEST(PhaseStretch, IsNotKnownOfWhatIsNotFinite) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double odd : {infinity, -infinity, nan}) {
        EXPECT_EQ(FindStretch(odd, 1.0, kMany).count, 0);
        EXPECT_EQ(FindStretch(1.0, odd, kMany).count, 0);
        EXPECT_EQ(FindStretch(odd, odd, kMany).count, 0);
    }
}

}  // namespace
