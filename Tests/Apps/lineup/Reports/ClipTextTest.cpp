#include "Apps/lineup/Reports/ClipText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace {

lineup::Clip Open(const lineup::BarsAndToneInfo& settings) {
    return lineup::Clip(std::make_shared<lineup::Importer>(TEST_BUNDLE), settings);
}

TEST(ClipText, SpellsCodesTheWayTheyAreStored) {
    EXPECT_EQ(cli::FileTypeText(0x58514E56), "XQNV");
    EXPECT_EQ(cli::PixelFormatText(0x37785556), "VUx7");
    EXPECT_EQ(cli::PixelFormatText(1), "....");
}

TEST(ClipText, DescribesASteadyTone) {
    const lineup::Clip clip = Open({});
    EXPECT_EQ(cli::SoundText(clip), "stereo (L R), 48000 Hz");
    EXPECT_EQ(cli::SignalText(clip), "1000 Hz at -12.04 dBFS peak");
    EXPECT_EQ(cli::LengthText(clip), "5.000 s (240000 samples)");
}

TEST(ClipText, DescribesAnIdent) {
    const lineup::Clip clip = Open({.numChannels = 6, .identifyChannels = 1, .identifierFormat = lineup::BLITS5_1});
    EXPECT_EQ(cli::SoundText(clip), "5.1 (L R Ls Rs C LFE), 48000 Hz");
    EXPECT_EQ(cli::SignalText(clip), "BLITS ident, 5.1, a cycle of 13.4 s");
}

TEST(ClipText, SaysThatAnUnknownIdentIsSilent) {
    const lineup::Clip clip =
        Open({.identifyChannels = 1, .identifierFormat = static_cast<lineup::IdentifierFormat>(7)});
    EXPECT_EQ(cli::SignalText(clip), "unknown ident 7: silent");
    EXPECT_EQ(cli::ClipJson(clip)["signal"].dump(), R"({"kind":"unknown ident","format":7})");
}

TEST(ClipText, CountsTheChannelsOfALayoutWithoutAName) {
    EXPECT_EQ(cli::SoundText(Open({.numChannels = 4})), "4 channels, 48000 Hz");
}

TEST(ClipText, SaysTheSameInJson) {
    const auto steady = cli::ClipJson(Open({.sampleRate = 44100.0F}));
    EXPECT_EQ(steady["layout"], "stereo");
    EXPECT_EQ(steady["durationSamples"], 220500);
    EXPECT_EQ(steady["signal"]["kind"], "steady");
    EXPECT_NEAR(steady["signal"]["levelDb"].get<double>(), -12.0412, 1e-4);

    const auto ident = cli::ClipJson(Open({.identifyChannels = 1, .identifierFormat = lineup::EBUStereo400}));
    EXPECT_EQ(ident["signal"]["name"], "ebu-stereo-400");
    EXPECT_EQ(ident["signal"]["cycleSeconds"], 3.0);
    const auto blits =
        cli::ClipJson(Open({.numChannels = 6, .identifyChannels = 1, .identifierFormat = lineup::BLITS5_1}));
    EXPECT_EQ(blits["signal"]["cycleSeconds"], 13.4);
}

}  // namespace
