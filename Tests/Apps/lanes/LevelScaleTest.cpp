#include "Apps/lanes/LevelScale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using lanes::LevelScale;
using testing::ElementsAre;
using testing::IsEmpty;

lineup::WaveformOverview Overview(bool showsWave, float maximum, float minimum) {
    lineup::WaveformOverview overview;
    overview.showsWave = showsWave;
    overview.channels = {{"L", {0.0F, maximum}, {0.0F, minimum}}};
    return overview;
}

TEST(LevelScale, PutsEveryLevelAtItsOwnHeight) {
    const LevelScale scale = LevelScale::For(Overview(false, 0.001F, -0.001F));
    EXPECT_DOUBLE_EQ(scale.Height(1), 66.0 / 69);  // 3 dB below the edge
    EXPECT_NEAR(scale.Height(0.25), (66 - 12.04) / 69, 1e-4);
    EXPECT_NEAR(scale.Height(-0.001), -6.0 / 69, 1e-12);
    EXPECT_EQ(scale.Height(1e-4), 0);
    EXPECT_EQ(scale.Height(0), 0);
    EXPECT_EQ(scale.Height(-100), -1);
}

TEST(LevelScale, OfAWaveIsLinearAndEndsALittleAboveItsPeak) {
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(true, 0.125F, -0.0625F)).Height(0.15), 1);
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(true, 0.0F, -0.5F)).Height(-0.3), -0.5);
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(true, 1e-15F, -1e-15F)).Height(1.2e-6), 1);
}

TEST(LevelScale, OfNothingAndOfSilenceIsInDecibels) {
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(true, 0.0F, 0.0F)).Height(1), 66.0 / 69);
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(true, nothing, nothing)).Height(1), 66.0 / 69);
}

TEST(LevelScale, NamesTheLineUpLevelFirstAndThenWhatThereIsRoomFor) {
    // Half a lane of 69 pixels has one a decibel.
    EXPECT_THAT(LevelScale::Decibels().NamedDb(69, 18), ElementsAre(-18, 0, -36, -54));
    EXPECT_THAT(LevelScale::Decibels().NamedDb(69, 19), ElementsAre(-18, -54));
    EXPECT_THAT(LevelScale::Decibels().NamedDb(69, 40), ElementsAre(-18));
    const LevelScale wave = LevelScale::Linear(0.15);  // an ident's
    // In a half lane of 45 pixels -18 dBFS stands at 45 * 0.1259 / 0.15 = 37.8, -24 at 18.9, -30 at 9.5.
    EXPECT_THAT(wave.NamedDb(45, 12), ElementsAre(-18, -24));
    EXPECT_THAT(wave.NamedDb(45, 9), ElementsAre(-18, -24, -30));
    EXPECT_THAT(wave.NamedDb(10, 30), IsEmpty());
}

TEST(LevelScale, TicksEverySixDecibelsThatStandApart) {
    EXPECT_THAT(LevelScale::Decibels().TicksDb(69, 3), ElementsAre(0, -6, -12, -18, -24, -30, -36, -42, -48, -54, -60));
    EXPECT_THAT(LevelScale::Decibels().TicksDb(30, 3), IsEmpty());  // 6 dB are 2.6 pixels
    EXPECT_THAT(LevelScale::Linear(1.2).TicksDb(45, 9), ElementsAre(0, -6));
}

}  // namespace
