#include <lineup/Importer.h>
#include <lineup/ToneChoice.h>
#include <lineup/UsageError.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

using lineup::ToneChoice;
using testing::AllOf;
using testing::HasSubstr;

lineup::BarsAndToneInfo Make(const ToneChoice& choice) {
    return lineup::MakeSettings(lineup::Importer(TEST_BUNDLE), choice);
}

std::string Refusal(const ToneChoice& choice) {
    try {
        Make(choice);
    } catch (const lineup::UsageError& error) {
        return error.what();
    }
    return "no refusal";
}

TEST(ToneChoice, OfNothingIsThePluginsDefault) {
    const lineup::BarsAndToneInfo expected;
    const lineup::BarsAndToneInfo settings = Make({});
    EXPECT_EQ(std::memcmp(&settings, &expected, sizeof expected), 0);
}

TEST(ToneChoice, OfNothingLeavesSettingsOfAnotherMeaningAsTheyAre) {
    const auto settings = lineup::MakeSettings(lineup::Importer(TEST_BUNDLES "/OwnSettings.bundle"), {});
    std::array<std::uint8_t, sizeof settings> bytes{};
    std::memcpy(bytes.data(), &settings, sizeof settings);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        EXPECT_EQ(bytes[i], i);
    }
}

TEST(ToneChoice, SetsWhatAPersonGives) {
    const lineup::BarsAndToneInfo settings =
        Make({.channels = "mono", .sampleRateHz = 96000, .frequencyHz = 440, .levelDb = -20});
    EXPECT_EQ(settings.numChannels, 1U);
    EXPECT_EQ(settings.channelType, lineup::kChannelTypeMono);
    EXPECT_EQ(settings.sampleRate, 96000.0F);
    EXPECT_EQ(settings.frequency, 440.0F);
    EXPECT_EQ(settings.amplitude, 0.1F);
    EXPECT_EQ(settings.identifyChannels, 0U);
}

TEST(ToneChoice, ZeroDecibelsIsFullScale) {
    EXPECT_EQ(Make({.levelDb = 0}).amplitude, 1.0F);
}

TEST(ToneChoice, OfAnIdentBringsItsChannels) {
    const lineup::BarsAndToneInfo settings = Make({.ident = "blits"});
    EXPECT_EQ(settings.numChannels, 6U);
    EXPECT_EQ(settings.channelType, lineup::kChannelType51);
    EXPECT_EQ(settings.identifyChannels, 1U);
    EXPECT_EQ(settings.identifierFormat, lineup::BLITS5_1);
    EXPECT_EQ(Make({.ident = "ebu-stereo-400"}).numChannels, 2U);
}

TEST(ToneChoice, AcceptsTheHighestFrequencyThatIsHeard) {
    EXPECT_EQ(Make({.frequencyHz = 23999.5}).frequency, 23999.5F);
    EXPECT_EQ(Make({.sampleRateHz = 96000, .frequencyHz = 47999}).frequency, 47999.0F);
}

TEST(ToneChoice, RefusesFrequenciesThatTheSampleRateCannotHold) {
    EXPECT_THAT(Refusal({.frequencyHz = 24001}), AllOf(HasSubstr("frequency 24001"), HasSubstr("below 24000 Hz")));
    EXPECT_THAT(Refusal({.frequencyHz = 24000}), HasSubstr("frequency 24000"));
    EXPECT_THAT(Refusal({.frequencyHz = 23999.9999}), HasSubstr("frequency 23999.9999"));  // 24000 in a record
    EXPECT_THAT(Refusal({.sampleRateHz = 8000, .frequencyHz = 5000}), HasSubstr("below 4000 Hz"));
    EXPECT_THAT(Refusal({.frequencyHz = 0}), HasSubstr("frequency 0"));
    EXPECT_THAT(Refusal({.frequencyHz = std::numeric_limits<double>::quiet_NaN()}), HasSubstr("frequency nan"));
}

TEST(ToneChoice, OfTheLowestLevelIsSilence) {
    EXPECT_EQ(Make({.levelDb = -300}).amplitude, 0.0F);
    EXPECT_GT(Make({.levelDb = -299}).amplitude, 0.0F);
}

TEST(ToneChoice, RefusesLevelsAboveFullScale) {
    EXPECT_THAT(Refusal({.levelDb = 0.1}), AllOf(HasSubstr("level 0.1"), HasSubstr("-300 to 0 dBFS")));
    EXPECT_THAT(Refusal({.levelDb = -301}), HasSubstr("level -301"));
}

TEST(ToneChoice, RefusesSampleRatesThatFilesCannotHold) {
    EXPECT_THAT(Refusal({.sampleRateHz = 7999}), HasSubstr("from 8000 to 384000"));
    EXPECT_THAT(Refusal({.sampleRateHz = 44100.5}), HasSubstr("a whole number"));
}

TEST(ToneChoice, RefusesNamesItDoesNotKnowAndSaysWhichThereAre) {
    EXPECT_THAT(Refusal({.channels = "quad"}), AllOf(HasSubstr("channels quad"), HasSubstr("mono, stereo, 5.1")));
    EXPECT_THAT(Refusal({.ident = "beep"}),
                AllOf(HasSubstr("ident beep"), HasSubstr("ebu-stereo-1000, ebu-stereo-400, ebu-5.1, blits")));
}

TEST(ToneChoice, RefusesAnIdentOnChannelsItIsNotMadeFor) {
    EXPECT_THAT(Refusal({.channels = "stereo", .ident = "blits"}),
                AllOf(HasSubstr("channels stereo"), HasSubstr("names the channels of 5.1")));
    EXPECT_THAT(Refusal({.channels = "5.1", .ident = "ebu-stereo-1000"}), HasSubstr("names the channels of stereo"));
    EXPECT_EQ(Make({.channels = "5.1", .ident = "ebu-5.1"}).numChannels, 6U);
}

TEST(ToneChoice, RefusesASteadyTonesValuesWithAnIdent) {
    EXPECT_THAT(Refusal({.levelDb = -18, .ident = "blits"}), AllOf(HasSubstr("level -18"), HasSubstr("fixed")));
    EXPECT_THAT(Refusal({.frequencyHz = 400, .ident = "ebu-stereo-400"}), HasSubstr("frequency 400"));
}

}  // namespace
