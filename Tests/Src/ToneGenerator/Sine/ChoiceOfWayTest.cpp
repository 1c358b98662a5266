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

std::vector<int> blocks;  // the samples of each call for single phases
std::vector<long long> stretches;
int turnsMade = 0;

constexpr sine::Kernels kNaming = {
    .ofPhases =
        [](const double* /*phases*/, double /*amplitude*/, float* out, int count) {
            blocks.push_back(count);
            std::fill_n(out, count, kByPhases);
        },
    .turns = [](double /*step*/, sine::Turns* /*turns*/) { ++turnsMade; },
    .ofStretch =
        [](const sine::Turns* /*turns*/, double /*phase*/, double /*increment*/, double /*amplitude*/, float* out,
           long long count) {
            stretches.push_back(count);
            std::fill_n(out, count, kByStretch);
        },
};

class ChoiceOfWay : public testing::Test {
protected:
    ChoiceOfWay() {
        blocks.clear();
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

TEST_F(ChoiceOfWay, AStretchHasABlockOfSamplesAtLeast) {
    EXPECT_THAT(Write({1.0, kStep, 0.5}, kBlock), Each(kByStretch));
    EXPECT_THAT(Write({1.0, kStep, 0.5}, kBlock - 1), Each(kByPhases));
}

TEST_F(ChoiceOfWay, StretchesFollowOneAnotherWithOneTableOfTurns) {
    EXPECT_THAT(Write({1.0, kStep, 0.5}, 8000), Each(kByStretch));
    EXPECT_THAT(stretches, ElementsAre(1024, 2048, 4096, 832));
    EXPECT_EQ(turnsMade, 1);
}

TEST_F(ChoiceOfWay, SinglePhasesComeInBlocks) {
    EXPECT_THAT(Write({2.0, -kStep, 0.5}, 130), Each(kByPhases));  // towards zero no stretch is known
    EXPECT_THAT(blocks, ElementsAre(kBlock, kBlock, 2));
    EXPECT_EQ(turnsMade, 0);
}

TEST_F(ChoiceOfWay, KernelsTakeAmplitudesThatTheirUncertaintyIsAPartOf) {
    for (const double sign : {1.0, -1.0}) {
        EXPECT_THAT(Write({1.0, kStep, sign * 0x1p-900}, kBlock), Each(kByStretch));
        EXPECT_THAT(Write({1.0, kStep, sign * 0x1p+900}, kBlock), Each(kByStretch));
        EXPECT_TRUE(IsPlain({1.0, kStep, sign * std::nextafter(0x1p-900, 0.0)}, kBlock));
        const double tooLarge = std::nextafter(0x1p+900, std::numeric_limits<double>::infinity());
        EXPECT_TRUE(IsPlain({1.0, kStep, sign * tooLarge}, kBlock));
    }
}

TEST_F(ChoiceOfWay, KernelsTakePhasesUpToTwoToTheTwentyFourth) {
    constexpr double kEnd = 0x1p+24;
    for (const double sign : {1.0, -1.0}) {
        EXPECT_THAT(Write({sign * (kEnd - 64.0), sign, 0.5}, 64), Each(kByStretch));  // the last is the end less one
        EXPECT_THAT(Write({sign * (kEnd - 63.0), sign, 0.5}, 63), Each(kByPhases));   // the next would be the end
        EXPECT_TRUE(IsPlain({sign * (kEnd - 62.0), sign, 0.5}, 63));                  // the next would be beyond
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
