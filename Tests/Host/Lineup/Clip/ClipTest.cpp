#include <lineup/Clip.h>
#include <lineup/Error.h>
#include "Host/Interface/Frame/PixelFormats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using lineup::Clip;
using lineup::Importer;
using testing::HasSubstr;

std::shared_ptr<const Importer> Plugin() {
    return std::make_shared<Importer>(TEST_BUNDLE);
}

TEST(Clip, WithoutSettingsIsFiveSecondsOfStereoAtTheHostsRate) {
    const Clip clip(Plugin(), std::nullopt, 44100.0F);
    EXPECT_EQ(clip.NumChannels(), 2);
    EXPECT_EQ(clip.SampleRate(), 44100.0F);
    EXPECT_EQ(clip.DurationSamples(), 220500);
    EXPECT_EQ(clip.ForRequest().prefs, nullptr);
    EXPECT_NE(clip.ForRequest().privateData, nullptr);
}

TEST(Clip, WithSettingsIsWhatTheySay) {
    const lineup::BarsAndToneInfo settings{.sampleRate = 96000.0F, .channelType = 1, .numChannels = 6};
    const Clip clip(Plugin(), settings);
    EXPECT_EQ(clip.NumChannels(), 6);
    EXPECT_EQ(clip.DurationSamples(), 480000);
    ASSERT_NE(clip.ForRequest().prefs, nullptr);
    EXPECT_EQ(std::memcmp(clip.ForRequest().prefs, &settings, sizeof settings), 0);
}

TEST(Clip, DrawsItsPictureInBothFormats) {
    const Clip clip(Plugin());
    const auto hd = clip.ReadFrame(160, 90, kPixelFormat_VUYA_32f);
    std::array<float, 4> pixel{};
    std::memcpy(pixel.data(), hd.Line(0), sizeof pixel);
    EXPECT_EQ(pixel, (std::array<float, 4>{0.0F, 0.0F, 88.0F / 219.0F, 1.0F}));  // 40% grey: Y 104

    const auto sd = clip.ReadFrame(72, 48, kPixelFormat_VUYA_8u);
    std::array<std::uint8_t, 4> code{};
    std::memcpy(code.data(), sd.Line(0), sizeof code);
    EXPECT_EQ(code, (std::array<std::uint8_t, 4>{128, 128, 180, 255}));
}

TEST(Clip, ReadsPeaksIntoTheClipsChannelsOnly) {
    lineup::BarsAndToneInfo settings;
    settings.numChannels = 2;
    settings.identifyChannels = 1;
    settings.identifierFormat = lineup::BLITS5_1;  // writes six channels
    const Clip clip(Plugin(), settings);
    std::array<std::vector<float>, 4> values;
    values.fill(std::vector<float>(8, -9.0F));
    const std::array<std::span<float>, 2> maxima = {values[0], values[1]};
    const std::array<std::span<float>, 2> minima = {values[2], values[3]};
    clip.ReadPeaks(0, 100.0F, maxima, minima);
    EXPECT_THAT(values[0], testing::Each(0.125F));
    EXPECT_THAT(values[1], testing::Each(0.0F));
    EXPECT_THAT(values[2], testing::Each(-0.125F));
}

TEST(Clip, RefusesPeakBuffersOfTheWrongShape) {
    const Clip clip(Plugin());
    std::vector<float> five(5);
    std::vector<float> six(6);
    const std::array<std::span<float>, 1> one = {five};
    const std::array<std::span<float>, 2> uneven = {five, six};
    EXPECT_THROW(clip.ReadPeaks(0, 100.0F, one, one), lineup::Error);
    EXPECT_THROW(clip.ReadPeaks(0, 100.0F, uneven, uneven), lineup::Error);
    const std::array<std::span<float>, 2> even = {five, five};
    EXPECT_THROW(clip.ReadPeaks(0, 100.0F, even, one), lineup::Error);
    EXPECT_THROW(clip.ReadPeaks(0, 100.0F, even, uneven), lineup::Error);
}

std::string OpeningError(const std::shared_ptr<const Importer>& importer, const lineup::BarsAndToneInfo& settings) {
    try {
        const Clip clip(importer, settings);
    } catch (const lineup::Error& error) {
        return error.what();
    }
    return "no error";
}

TEST(Clip, RefusesSettingsThatCannotBePlayed) {
    const auto plugin = Plugin();
    EXPECT_THAT(OpeningError(plugin, {.numChannels = 0}), HasSubstr("a clip of 0 channels"));
    EXPECT_THAT(OpeningError(plugin, {.numChannels = 4000000000}), HasSubstr("a clip of 4000000000 channels"));
    EXPECT_THAT(OpeningError(plugin, {.sampleRate = 0.0F}), HasSubstr("a sample rate of 0 Hz"));
    EXPECT_THAT(OpeningError(plugin, {.sampleRate = -48000.0F}), HasSubstr("a sample rate of -48000 Hz"));
    EXPECT_THAT(OpeningError(plugin, {.sampleRate = std::numeric_limits<float>::quiet_NaN()}), HasSubstr("nan"));
    EXPECT_THAT(OpeningError(plugin, {.sampleRate = std::numeric_limits<float>::infinity()}), HasSubstr("inf"));
    EXPECT_THAT(OpeningError(plugin, {.sampleRate = 3e6F}), HasSubstr("a sample rate of 3000000 Hz"));
}

TEST(Clip, OfAPluginThatDescribesNoChannelsIsRefused) {
    const auto faulty = std::make_shared<Importer>(TEST_BUNDLES "/NoChannels.bundle");
    EXPECT_THAT(OpeningError(faulty, {}), HasSubstr("a clip of 0 channels"));
}

}  // namespace
