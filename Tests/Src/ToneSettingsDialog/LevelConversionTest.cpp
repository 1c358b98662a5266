#include "Src/ToneSettingsDialog/LevelConversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(LevelDbFromGain, ShowsFullScaleAsZero) {
    EXPECT_EQ(LevelDbFromGain(1.0F), 0.0F);
}

TEST(LevelDbFromGain, ShowsAQuarterAsMinus12Point0412) {
    EXPECT_NEAR(LevelDbFromGain(0.25F), -12.041200F, 1e-6F);  // 20 log10(0.25) = -12.04119983
}

TEST(LevelDbFromGain, ShowsSilenceAndWhatIsBelow1e15AsMinus300) {
    constexpr float kDenormal = std::numeric_limits<float>::denorm_min();
    for (const float gain : {0.0F, -0.0F, kDenormal, 0.99e-15F, -1.0F, -std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(LevelDbFromGain(gain), -300.0F) << gain;
    }
    EXPECT_EQ(LevelDbFromGain(1e-15F), -300.0F);
    EXPECT_NEAR(LevelDbFromGain(1e-14F), -280.0F, 1e-4F);
}

TEST(LevelDbFromGain, ShowsNoNumberForNoNumber) {
    EXPECT_TRUE(std::isnan(LevelDbFromGain(std::numeric_limits<float>::quiet_NaN())));
    EXPECT_EQ(LevelDbFromGain(std::numeric_limits<float>::infinity()), std::numeric_limits<float>::infinity());
}

TEST(GainFromLevelDb, StoresZeroDbAsFullScale) {
    EXPECT_EQ(GainFromLevelDb(0.0F), 1.0F);
}

TEST(GainFromLevelDb, StoresWholeDecadesAsTheNearestFloat) {
    EXPECT_EQ(GainFromLevelDb(-20.0F), 0.1F);
    EXPECT_EQ(GainFromLevelDb(-40.0F), 0.01F);
    EXPECT_EQ(GainFromLevelDb(20.0F), 10.0F);
}

TEST(GainFromLevelDb, StoresMinus12Point0412AsAQuarter) {
    EXPECT_NEAR(GainFromLevelDb(-12.0412F), 0.25F, 1e-7F);
}

TEST(GainFromLevelDb, DividesByTwentyInSinglePrecision) {
    const float levelDb = -1.6F;
    const double decades = static_cast<double>(levelDb / 20.0F);
    ASSERT_NE(static_cast<float>(std::pow(10.0, static_cast<double>(levelDb) / 20.0)), 0.831763804F);
    ASSERT_EQ(static_cast<float>(std::pow(10.0, decades)), 0.831763804F);
    EXPECT_EQ(GainFromLevelDb(levelDb), 0.831763804F);
}

TEST(GainFromLevelDb, UndoesWhatIsShownToWithinAFewUnitsInTheLastPlace) {
    for (const float gain : {0.001F, 0.125F, 0.25F, 0.5F, 0.7F, 1.0F}) {
        EXPECT_NEAR(GainFromLevelDb(LevelDbFromGain(gain)) / gain, 1.0F, 1e-6F) << gain;
    }
}
