#include "Apps/lineup/Overview/LevelScale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using cli::LevelScale;
using testing::ElementsAre;
using testing::IsEmpty;

lineup::WaveformOverview Overview(float maximum, float minimum) {
    lineup::WaveformOverview overview;
    overview.channels = {{"L", {0.0F, maximum}, {0.0F, minimum}}};
    return overview;
}

TEST(LevelScale, EndsALittleAboveTheLoudestPeak) {
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(0.125F, -0.0625F)).top, 0.15);
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(0.0F, -0.5F)).top, 0.6);
}

TEST(LevelScale, OfNothingAndOfSilenceGoesToFullScale) {
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(LevelScale::For(Overview(0.0F, 0.0F)).top, 1);
    EXPECT_EQ(LevelScale::For(Overview(nothing, nothing)).top, 1);
    EXPECT_DOUBLE_EQ(LevelScale::For(Overview(1e-15F, -1e-15F)).top, 1.2e-6);
}

TEST(LevelScale, MarksEverySixDecibelsThatThereIsRoomFor) {
    const LevelScale scale{0.15};  // an ident's
    // In a half lane of 45 pixels -18 dBFS stands at 45 * 0.1259 / 0.15 = 37.8, -24 at 18.9, -30 at 9.5.
    EXPECT_THAT(scale.MarksDb(45, 12), ElementsAre(-18, -24));
    EXPECT_THAT(scale.MarksDb(45, 9), ElementsAre(-18, -24, -30));
    EXPECT_THAT(scale.MarksDb(45, 19), ElementsAre(-18));
    EXPECT_THAT(scale.MarksDb(10, 12), IsEmpty());
}

TEST(LevelScale, MarksFullScale) {
    EXPECT_THAT(LevelScale{1.2}.MarksDb(45, 12), ElementsAre(0, -6));
}

}  // namespace
