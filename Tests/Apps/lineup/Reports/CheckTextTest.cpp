#include "Apps/lineup/Reports/CheckTable.h"
#include "Apps/lineup/Reports/CheckText.h"
#include "Tests/Apps/lineup/Reports/CheckReports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using cli::CheckText;
using testing::HasSubstr;
using testing::Not;

TEST(CheckText, IsATableAndALineAFault) {
    EXPECT_EQ(CheckText(test::FaultyCheckReport()),
              "BLITS ident, 5.1, from 0:03.214 on, 2.1 cycles, 48 kHz\n"
              "\n"
              "input  channel  polarity   level     gain     delay  noise\n"
              "1      L        +         -18.06 dB  0.00 dB   0.25   -121 dB\n"
              "2      R        +         -18.06     0.00      0.25   -121\n"
              "3      C        -         -18.06     0.00      0.25   -121     upside down\n"
              "4      -                                                       silence where a channel is due\n"
              "5      Ls       +         -18.06     0.00      0.25   -121\n"
              "6      Rs       +         -18.06     0.00      0.25   -121\n"
              "\n"
              "2 faults\n"
              "  C (input 3) is upside down.\n"
              "  LFE is missing at <input 4>.\n"
              "note: The LFE is filtered & quiet.\n");
}

TEST(CheckText, SaysThatNothingIsWrong) {
    EXPECT_THAT(CheckText(test::RightCheckReport()), HasSubstr("\n\nnothing wrong\n"));
    EXPECT_THAT(CheckText(test::RightCheckReport()), Not(HasSubstr("\033")));
}

TEST(CheckText, SaysOnceWhyNothingCanBeTold) {
    EXPECT_EQ(CheckText(test::UnreadableCheckReport()),
              "cannot read missing.wav: there is no such file\n\ncannot tell\n");
}

TEST(CheckText, NamesTheRecordingWhereThereAreSeveral) {
    EXPECT_THAT(CheckText(test::RightCheckReport(), {.namesRecording = true}),
                testing::StartsWith("take <1>.mov\nBLITS"));
}

TEST(CheckText, IsColouredWhereThatIsWanted) {
    EXPECT_THAT(CheckText(test::RightCheckReport(), {.isColoured = true}), HasSubstr("\033[32mnothing wrong\033[0m"));
    EXPECT_THAT(CheckText(test::FaultyCheckReport(), {.isColoured = true}), HasSubstr("\033[31m2 faults\033[0m"));
    EXPECT_THAT(CheckText(test::FaultyCheckReport(), {.isColoured = true}), HasSubstr("\033[31mupside down\033[0m"));
    EXPECT_THAT(CheckText(test::UnreadableCheckReport(), {.isColoured = true}),
                HasSubstr("\033[33mcannot tell\033[0m"));
}

TEST(CheckText, OfASteadyToneCountsNoCycles) {
    lineup::CheckReport report = test::RightCheckReport();
    report.sound->expected = "tone";
    report.sound->cycles.reset();
    report.sound->sampleRate = 44100;
    EXPECT_EQ(cli::CheckHeading(report), "steady tone, from 0:03.214 on, 44.1 kHz");
}

TEST(CheckComplaints, AreWhatIsWrongAndNothingElse) {
    EXPECT_EQ(cli::CheckComplaints(test::RightCheckReport()), "");
    EXPECT_EQ(cli::CheckComplaints(test::FaultyCheckReport()),
              "take <1>.mov: C (input 3) is upside down.\ntake <1>.mov: LFE is missing at <input 4>.\n");
    EXPECT_EQ(cli::CheckComplaints(test::UnreadableCheckReport()),
              "missing.wav: cannot tell: cannot read missing.wav: there is no such file\n");
}

TEST(PlaceText, HasHoursWhereThereAreSome) {
    EXPECT_EQ(cli::PlaceText(0), "0:00.000");
    EXPECT_EQ(cli::PlaceText(59.9996), "1:00.000");
    EXPECT_EQ(cli::PlaceText(3661.5), "1:01:01.500");
}

}  // namespace
