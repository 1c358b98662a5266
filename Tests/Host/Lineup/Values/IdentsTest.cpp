#include <lineup/Idents.h>
#include "Host/Interface/Media/TickTime.h"

#include <gtest/gtest.h>

namespace {

using zelmediatypes::kTicksPerSecond;

TEST(Idents, AreTheFourSequencesInTheOrderOfTheirFormats) {
    const auto idents = lineup::Idents();
    ASSERT_EQ(idents.size(), 4U);
    for (std::size_t i = 0; i < idents.size(); ++i) {
        EXPECT_EQ(idents[i].format, static_cast<lineup::IdentifierFormat>(i));
    }
}

TEST(Idents, LastThreeTwelveAndThirteenPointFourSeconds) {
    EXPECT_EQ(lineup::FindIdent("ebu-stereo-1000")->cycleTicks, 3 * kTicksPerSecond);
    EXPECT_EQ(lineup::FindIdent("ebu-stereo-400")->cycleTicks, 3 * kTicksPerSecond);
    EXPECT_EQ(lineup::FindIdent("ebu-5.1")->cycleTicks, 12 * kTicksPerSecond);
    EXPECT_EQ(lineup::FindIdent("blits")->cycleTicks, 134 * kTicksPerSecond / 10);
}

TEST(Idents, ASteadyToneOrAnUnknownFormatPlaysNone) {
    lineup::BarsAndToneInfo settings;
    settings.identifierFormat = lineup::BLITS5_1;
    EXPECT_EQ(lineup::FindIdent(settings), nullptr);
    settings.identifyChannels = 1;
    EXPECT_EQ(lineup::FindIdent(settings)->name, "blits");
    settings.identifierFormat = static_cast<lineup::IdentifierFormat>(7);
    EXPECT_EQ(lineup::FindIdent(settings), nullptr);
}

TEST(Idents, AnUnknownFormatIsOneWhereASequenceIsToPlay) {
    lineup::BarsAndToneInfo settings;
    settings.identifierFormat = static_cast<lineup::IdentifierFormat>(7);
    EXPECT_FALSE(lineup::AsksForUnknownIdent(settings));
    settings.identifyChannels = 2;  // anything but 1 is a steady tone
    EXPECT_FALSE(lineup::AsksForUnknownIdent(settings));
    settings.identifyChannels = 1;
    EXPECT_TRUE(lineup::AsksForUnknownIdent(settings));
    EXPECT_EQ(lineup::UnknownIdentText(settings), "unknown ident 7: silent");
    settings.identifierFormat = lineup::BLITS5_1;
    EXPECT_FALSE(lineup::AsksForUnknownIdent(settings));
}

}  // namespace
