#include "Src/ToneSettingsDialog/LevelConversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(LevelDbFromGain, IsTwentyTimesTheDecadesAndMinus300ForSilence) {
    const std::pair<float, float> kGainsAndLevels[] = {
        {1.0F, 0.0F},          {kInfinity, kInfinity}, {0.0F, -300.0F},
        {-0.0F, -300.0F},      {-1.0F, -300.0F},       {std::numeric_limits<float>::denorm_min(), -300.0F},
        {-kInfinity, -300.0F}, {0.99e-15F, -300.0F},   {1e-15F, -300.0F},
    };
    for (const auto& [gain, levelDb] : kGainsAndLevels) {
        EXPECT_EQ(LevelDbFromGain(gain), levelDb) << gain;
    }
    EXPECT_NEAR(LevelDbFromGain(0.25F), -12.041200F, 1e-6F);  // 20 log10(0.25) = -12.04119983
    EXPECT_NEAR(LevelDbFromGain(1e-14F), -280.0F, 1e-4F);
    EXPECT_TRUE(std::isnan(LevelDbFromGain(std::numeric_limits<float>::quiet_NaN())));
}

TEST(GainFromLevelDb, IsTheNearestFloatOfATwentiethInSinglePrecision) {
    const std::pair<float, float> kLevelsAndGains[] = {
        {0.0F, 1.0F},   {-20.0F, 0.1F},        {-40.0F, 0.01F},
        {20.0F, 10.0F}, {-1.6F, 0.831763804F},  // 0.831763744 with a twentieth in double precision
    };
    for (const auto& [levelDb, gain] : kLevelsAndGains) {
        EXPECT_EQ(GainFromLevelDb(levelDb), gain) << levelDb;
    }
    EXPECT_NEAR(GainFromLevelDb(-12.0412F), 0.25F, 1e-7F);
}

TEST(GainFromLevelDb, UndoesWhatIsShownToWithinAFewUnitsInTheLastPlace) {
    for (const float gain : {0.001F, 0.125F, 0.25F, 0.5F, 0.7F, 1.0F}) {
        EXPECT_NEAR(GainFromLevelDb(LevelDbFromGain(gain)) / gain, 1.0F, 1e-6F) << gain;
    }
}

}  // namespace
