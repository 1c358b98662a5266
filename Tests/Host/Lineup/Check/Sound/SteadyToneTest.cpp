#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace {

using test::Check;
using test::Ids;
using test::kRate;
using test::Sound;
using test::Strings;
using test::Tone;

lineup::CheckSettings ExpectTone(double frequency, double levelDb) {
    lineup::CheckSettings settings;
    settings.expect = "tone";
    settings.frequencyHz = frequency;
    settings.levelDb = levelDb;
    return settings;
}

TEST(SteadyTone, OfAnyMakerIsRightAndNamesNoChannel) {
    for (const double frequency : {100.0, 440.0, 997.0, 1000.0, 2000.0}) {
        const auto findings = Check(Tone(frequency, 0.1, 5));
        EXPECT_EQ(findings.verdict, lineup::CheckVerdict::Right) << frequency;
        EXPECT_EQ(findings.sound.expected, "tone");
        ASSERT_TRUE(findings.sound.speed) << frequency;
        EXPECT_NEAR(findings.sound.speed->ppm, 0, 0.1);
        EXPECT_NEAR(findings.sound.channels[1].level.value_or(0), -20, 0.01);
        EXPECT_FALSE(findings.sound.channels[1].channel);
        EXPECT_FALSE(findings.sound.channels[1].gain) << "nobody said what was sent";
    }
}

TEST(SteadyTone, IsHeldAgainstWhatIsSaidToHaveBeenSent) {
    const auto findings = Check(Tone(1000.05, 0.1, 5), kRate, ExpectTone(1000, -18));
    ASSERT_EQ(Ids(findings), (Strings{"level-wrong", "speed-wrong"}));
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), -2, 0.01);
    EXPECT_NEAR(findings.faults[1].measured.value_or(0), 50, 0.1);
}

// As soft as a line-up is: a clock that is off is told beside the wow that is over it.
TEST(SteadyTone, HasItsSpeedToldWhereThatSwings) {
    constexpr double kDepth = 0.0039;
    constexpr double kHertz = 3.3;
    Sound sound(2, std::vector<float>(static_cast<std::size_t>(6.8 * kRate)));
    for (std::size_t n = 0; n < sound[0].size(); ++n) {
        const double second = static_cast<double>(n) / kRate;
        const double angle = 2 * std::numbers::pi * kHertz * second;
        const double late = kDepth * std::sin(angle) / (2 * std::numbers::pi * kHertz);
        const double turns = 1001 * (second + late);
        sound[0][n] = sound[1][n] = static_cast<float>(0.125 * std::sin(2 * std::numbers::pi * turns));
    }
    const auto findings = Check(std::move(sound), kRate, ExpectTone(1000, -18.0618));
    ASSERT_EQ(Ids(findings), (Strings{"speed-wrong", "speed-unsteady"}));
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), 1000, 5);
    EXPECT_NEAR(findings.faults[1].measured.value_or(0), kDepth / std::numbers::sqrt2 * 1e6, 30);
}

TEST(SteadyTone, TellsPolarityDelayAndLevelOfChannelsAgainstEachOther) {
    Sound sound = Tone(1000, 0.125, 5, 6);
    for (float& x : sound[2]) {
        x = -x;
    }
    std::shift_left(sound[3].begin(), sound[3].end(), 2);
    for (float& x : sound[4]) {
        x *= 0.5F;
    }
    std::ranges::fill(sound[5], 0.0F);
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), (Strings{"channel-missing", "level-unbalanced", "polarity-inverted", "delay"}));
    EXPECT_EQ(findings.faults[0].inputs, std::vector<int>{5});
    EXPECT_NEAR(findings.faults[1].measured.value_or(0), -6.02, 0.01);
    EXPECT_EQ(findings.faults[2].inputs, std::vector<int>{2});
    EXPECT_EQ(findings.faults[3].inputs, std::vector<int>{3});
    EXPECT_NEAR(findings.faults[3].measured.value_or(0), -2, 0.05);
}

TEST(SteadyTone, IsNoSequenceAndAShortOneIsNothing) {
    lineup::CheckSettings settings;
    settings.expect = "blits";
    EXPECT_EQ(Ids(Check(Tone(1000, 0.125, 5), kRate, settings)), Strings{"sequence-other"});
    EXPECT_EQ(Check(Tone(1000, 0.125, 0.6)).verdict, lineup::CheckVerdict::CannotTell);
}

TEST(SteadyTone, IsWhatSettingsOfAClipSay) {
    lineup::CheckSettings settings;
    settings.settings = lineup::MakeSettings(*test::Bundle(), {.channels = "5.1", .frequencyHz = 440, .levelDb = -18});
    const auto findings = Check(Tone(440, std::pow(10, -18.0 / 20), 5), kRate, settings);
    EXPECT_EQ(Ids(findings), Strings{"channel-missing"}) << "two of six channels";
    EXPECT_NEAR(findings.sound.channels[0].gain.value_or(9), 0, 0.01);
}

}  // namespace
