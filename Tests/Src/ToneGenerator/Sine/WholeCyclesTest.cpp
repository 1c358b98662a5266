#include "Src/ToneGenerator/Sine/WholeCycles.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using sine::Wave;
using sine::WholeCycles;

constexpr Wave kWave{.phase = 0.0, .step = 0.125, .amplitude = 0.5};

std::vector<float> Samples(long long count) {
    std::vector<float> samples(static_cast<std::size_t>(count));
    sine::WritePlain(kWave, samples.data(), count);
    return samples;
}

TEST(WholeCycles, GiveBackWhatTheyKeep) {
    WholeCycles cycles;
    const std::vector<float> kept = Samples(48);
    cycles.Keep(kWave, kept.data(), 48);
    std::vector<float> found(48);
    ASSERT_TRUE(cycles.Find(kWave, found.data(), 48));
    EXPECT_EQ(found, kept);
    ASSERT_TRUE(cycles.Find(kWave, found.data(), 20));  // a wave begins alike however long it is
}

TEST(WholeCycles, KeepTheLatestWave) {
    WholeCycles cycles;
    const Wave other{.phase = 0.0, .step = 0.25, .amplitude = 0.5};
    cycles.Keep(kWave, Samples(48).data(), 48);
    cycles.Keep(other, std::vector<float>(48, 2.0F).data(), 48);
    std::vector<float> found(48);
    EXPECT_FALSE(cycles.Find(kWave, found.data(), 48));
    ASSERT_TRUE(cycles.Find(other, found.data(), 48));
    EXPECT_EQ(found, std::vector<float>(48, 2.0F));
}

TEST(WholeCycles, FindNoOtherWave) {
    WholeCycles cycles;
    cycles.Keep(kWave, Samples(48).data(), 48);
    std::vector<float> found(96);
    for (const Wave& other : {Wave{.phase = 0.0, .step = 0.12500000000000003, .amplitude = 0.5},
                              Wave{.phase = 0.0, .step = 0.125, .amplitude = -0.5}}) {
        EXPECT_FALSE(cycles.Find(other, found.data(), 48));
    }
    EXPECT_FALSE(cycles.Find(kWave, found.data(), 50));  // longer than what is kept
    EXPECT_FALSE(WholeCycles().Find(kWave, found.data(), 48));
}

TEST(WholeCycles, AreForShortWavesThatBeginAtPhaseZero) {
    EXPECT_TRUE(WholeCycles::Takes(kWave, 96));
    EXPECT_FALSE(WholeCycles::Takes(kWave, 98));
    EXPECT_FALSE(WholeCycles::Takes(kWave, 47));
    EXPECT_FALSE(WholeCycles::Takes(kWave, 0));
    EXPECT_FALSE(WholeCycles::Takes({.phase = -0.0, .step = 0.125, .amplitude = 0.5}, 48));  // its first sample is -0
    EXPECT_FALSE(WholeCycles::Takes({.phase = 5e-324, .step = 0.125, .amplitude = 0.5}, 48));
}

}  // namespace
