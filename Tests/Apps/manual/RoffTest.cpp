#include "Apps/manual/Roff.h"

#include <gtest/gtest.h>

namespace {

using manual::Escaped;
using manual::Filled;
using manual::FromHelp;

TEST(Roff, KeepsHyphensQuotesAndBackslashesAsTheyStand) {
    EXPECT_EQ(Escaped("--no-sync"), "\\-\\-no\\-sync");
    EXPECT_EQ(Escaped("R'G'B'"), "R\\(aqG\\(aqB\\(aq");
    EXPECT_EQ(Escaped("a\\b"), "a\\eb");
}

TEST(Roff, TakesNoTextForARequest) {
    EXPECT_EQ(Escaped(".mov"), "\\&.mov");
    EXPECT_EQ(Escaped("'tis"), "\\(aqtis");
}

TEST(Roff, BreaksRunningTextBeforeItIsTooLongForASource) {
    EXPECT_EQ(Filled(std::string(70, 'a') + " bbb cccccc .dd"), std::string(70, 'a') + " bbb\ncccccc \\&.dd\n");
    EXPECT_EQ(Filled(std::string(90, 'a')), std::string(90, 'a') + "\n");
}

TEST(Roff, MakesAListOfIndentedLines) {
    EXPECT_EQ(FromHelp("Kinds of files:\n"
                       "  .mov  QuickTime movie\n"
                       "        sound:   pcm\n"
                       "  .wav  sound alone"),
              "Kinds of files:\n"
              ".TP\n\\fB\\&.mov\\fR\nQuickTime movie\n"
              ".br\nsound: pcm\n"
              ".TP\n\\fB\\&.wav\\fR\nsound alone\n");
}

TEST(Roff, LetsAnItemStandAlone) {
    EXPECT_EQ(FromHelp("  lineup info"), ".TP\n\\fBlineup info\\fR\n");
}

TEST(Roff, BeginsASectionWithExamplesAndWithTheExitStatus) {
    EXPECT_EQ(FromHelp("One.\n\nTwo.\n\nExamples:\n  lineup info  tells\n\nExit status: 0 done"),
              "One.\n.PP\nTwo.\n"
              ".SH EXAMPLES\n.TP\n\\fBlineup info\\fR\ntells\n"
              ".SH EXIT STATUS\n0 done\n");
}

}  // namespace
