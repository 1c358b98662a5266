#include "Src/ToneGenerator/Sine/Blocks.h"
#include "Src/ToneGenerator/Sine/FastSine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// Which way a wave's samples go: by the kernels for single phases, by those for even stretches, or one by one as the
// definition says. All ways give the same samples, so kernels of the test's own write their names instead.

namespace {

using sine::kBlock;
using sine::Wave;
using testing::Each;
using testing::ElementsAre;

constexpr float kByPhases = 2.0F;  // no sample of an amplitude below 2
constexpr float kByStretch = 3.0F;

constexpr long long kShortest = 100;  // stretch

std::vector<long long> pieces;  // the samples of each call for single phases
std::vector<long long> stretches;
int turnsMade = 0;

constexpr sine::Kernels kNaming = {
    .ofPhases =
        [](double phase, double step, double /*amplitude*/, float* out, long long count) {
            pieces.push_back(count);
            std::fill_n(out, count, kByPhases);
            return phase + static_cast<double>(count) * step;
        },
    .turns = [](double /*step*/, sine::Turns* /*turns*/) { ++turnsMade; },
    .ofStretch =
        [](const sine::Turns* /*turns*/, double /*phase*/, double /*increment*/, double /*amplitude*/, float* out,
           long long count) {
            stretches.push_back(count);
            std::fill_n(out, count, kByStretch);
        },
    .shortestStretch = kShortest,
};

class ChoiceOfWay : public testing::Test {
protected:
    ChoiceOfWay() {
        pieces.clear();
        stretches.clear();
        turnsMade = 0;
    }

    static std::vector<float> Write(const Wave& wave, std::size_t count) {
        std::vector<float> samples(count);
        sine::WriteFast(kNaming, wave, samples.data(), static_cast<long long>(count));
        return samples;
    }
    static testing::AssertionResult IsPlain(const Wave& wave, std::size_t count) {
        std::vector<float> plain(count);
        sine::WritePlain(wave, plain.data(), static_cast<long long>(count));
        return Write(wave, count) == plain ? testing::AssertionSuccess() : testing::AssertionFailure();
    }
};

// From 1 in steps of 2^-10: 1024 phases lie below 2, then 2048 below 4, and so on.
constexpr double kStep = 0x1p-10;

TEST_F(ChoiceOfWay, AStretchHasTheSamplesAtLeastThatPayForItsTable) {
    EXPECT_THAT(Write({1.0, kStep, 0.5}, kShortest), Each(kByStretch));
    EXPECT_THAT(Write({1.0, kStep, 0.5}, kShortest - 1), Each(kByPhases));
    EXPECT_THAT(pieces, ElementsAre(kShortest - 1));
}

TEST_F(ChoiceOfWay, StretchesFollowOneAnotherWithOneTableOfTurns) {
    EXPECT_THAT(Write({1.0, kStep, 0.5}, 8000), Each(kByStretch));
    EXPECT_THAT(stretches, ElementsAre(1024, 2048, 4096, 832));
    EXPECT_EQ(turnsMade, 1);
}

TEST_F(ChoiceOfWay, WhatIsBeforeALongStretchComesFirst) {
    EXPECT_THAT(Write({1.0 - 80 * kStep, kStep, 0.5}, 2000).front(), kByPhases);  // 80 samples to the binade's end
    EXPECT_THAT(pieces, ElementsAre(80));
    EXPECT_THAT(stretches, ElementsAre(1024, 896));
}

TEST_F(ChoiceOfWay, PhasesOfNoKnownStretchComeInBlocks) {
    EXPECT_THAT(Write({2.0, -kStep, 0.5}, 200), Each(kByPhases));  // towards zero no stretch is known
    EXPECT_THAT(pieces, ElementsAre(kBlock, kBlock, 72));
    EXPECT_EQ(turnsMade, 0);
}

TEST_F(ChoiceOfWay, KernelsTakeAmplitudesOfWhichEveryFloatHasItsFullPrecision) {
    for (const double sign : {1.0, -1.0}) {
        EXPECT_THAT(Write({1.0, kStep, sign * 0x1p-60}, kShortest), Each(kByStretch));
        EXPECT_THAT(Write({1.0, kStep, sign * 0x1p+60}, kShortest), Each(kByStretch));
        EXPECT_TRUE(IsPlain({1.0, kStep, sign * std::nextafter(0x1p-60, 0.0)}, kShortest));
        const double tooLarge = std::nextafter(0x1p+60, std::numeric_limits<double>::infinity());
        EXPECT_TRUE(IsPlain({1.0, kStep, sign * tooLarge}, kShortest));
    }
}

TEST_F(ChoiceOfWay, KernelsTakePhasesUpToTwoToTheTwentyFourth) {
    constexpr double kEnd = 0x1p+24;
    for (const double sign : {1.0, -1.0}) {
        EXPECT_THAT(Write({sign * (kEnd - 100.0), sign, 0.5}, 100), Each(kByStretch));  // the last: the end less one
        EXPECT_THAT(Write({sign * (kEnd - 63.0), sign, 0.5}, 63), Each(kByPhases));     // the next would be the end
        EXPECT_TRUE(IsPlain({sign * (kEnd - 62.0), sign, 0.5}, 63));                    // the next would be beyond
        EXPECT_TRUE(IsPlain({sign * kEnd, sign, 0.5}, 64));
        EXPECT_TRUE(IsPlain({sign * (kEnd + 2.0), sign * -1.0, 0.5}, 1));
    }
}

TEST_F(ChoiceOfWay, WhatLiesBeyondGoesTheDefinitionsWayFromThereOn) {
    const std::vector<float> samples = Write({0x1p+24 - 128.0, 1.0, 0.5}, 200);
    EXPECT_THAT(stretches, ElementsAre(128));
    EXPECT_EQ(std::count(samples.begin(), samples.end(), kByStretch), 128);
    EXPECT_EQ(std::count(samples.begin(), samples.end(), kByPhases), 0);
}

TEST_F(ChoiceOfWay, APhaseOfZeroIsItsOwnSineAndOneThatStandsStillGoesTheDefinitionsWay) {
    for (const double zero : {0.0, -0.0}) {
        const std::vector<float> samples = Write({zero, kStep, -0.5}, 3);
        EXPECT_EQ(samples[0], 0.0F);
        EXPECT_EQ(std::signbit(samples[0]), !std::signbit(zero));
        EXPECT_EQ(samples[1], kByPhases);
        EXPECT_TRUE(IsPlain({zero, zero, 0.5}, 3));
    }
}

TEST(Blocks, AreBegunByTheirFirstSample) {
    EXPECT_EQ(sine::BlocksOf(1), 1);
    EXPECT_EQ(sine::BlocksOf(kBlock - 1), 1);
    EXPECT_EQ(sine::BlocksOf(kBlock), 1);
    EXPECT_EQ(sine::BlocksOf(kBlock + 1), 2);
    EXPECT_EQ(sine::BlocksOf(2 * kBlock), 2);
}

TEST(Blocks, AreNoMoreThanABlockHasSamples) {
    EXPECT_EQ(sine::BlocksOf(kBlock * (kBlock - 1)), kBlock - 1);
    EXPECT_EQ(sine::BlocksOf(kBlock * kBlock), kBlock);
    EXPECT_EQ(sine::BlocksOf(kBlock * kBlock + 1), kBlock);
    EXPECT_EQ(sine::BlocksOf(std::numeric_limits<std::int32_t>::max()), kBlock);
}

}  // namespace
