#include "Apps/manual/ManualPage.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// A program with one command that shows and one that does not.
class ManualPages : public testing::Test {
protected:
    ManualPages() : mProgram("Makes things.", "maker") {
        CLI::App* const command = mProgram.add_subcommand("make", "Make a thing");
        command->add_option("OUT", mText, "The thing")->required();
        command->add_option("--size", mSize, "How large")->type_name("N")->capture_default_str();
        command->add_flag("-y,--yes", mFlag, "Ask nothing")->group("Manners");
        command->add_flag("--secret", mFlag, "Not for people")->group("");
        command->footer("It is made at once.\n\nExit status: 0 made");
        mProgram.add_subcommand("inner", "Not for people")->group("");
    }

    [[nodiscard]] std::vector<manual::Page> Pages() const {
        return manual::ManualPages(mProgram, {"1.2", "2026-01-31"}, {"shaper"});
    }
    [[nodiscard]] std::string PageOf(const std::string& name) const {
        for (const manual::Page& page : Pages()) {
            if (page.name == name) {
                return page.source;
            }
        }
        ADD_FAILURE() << "no page of " << name;
        return "";
    }

private:
    CLI::App mProgram;
    std::string mText;
    int mSize = 3;
    bool mFlag = false;
};

TEST_F(ManualPages, AreThatOfTheProgramAndOneOfEachCommandThatIsForPeople) {
    EXPECT_EQ(Pages().size(), 2U);
    EXPECT_THAT(PageOf("maker"), AllOf(HasSubstr(".SH NAME\nmaker \\- makes things\n"),
                                       HasSubstr("maker\\-make\\fR(1)\n"), Not(HasSubstr("inner"))));
}

TEST_F(ManualPages, BearTheVersionAndItsDay) {
    EXPECT_THAT(PageOf("maker-make"),
                HasSubstr(".TH MAKER\\-MAKE 1 2026-01-31 \"Bars and Tone 1.2\" \"User Commands\"\n"));
}

TEST_F(ManualPages, SayHowACommandIsCalled) {
    EXPECT_THAT(PageOf("maker-make"), HasSubstr(".SH SYNOPSIS\n\\fBmaker make\\fR [\\fIOPTIONS\\fR] \\fIOUT\\fR\n"));
    EXPECT_THAT(PageOf("maker"), HasSubstr("\\fBmaker\\fR [\\fIOPTIONS\\fR] \\fICOMMAND\\fR ...\n"));
}

TEST_F(ManualPages, ListTheOptionsInTheirGroups) {
    EXPECT_THAT(
        PageOf("maker-make"),
        AllOf(HasSubstr(".TP\n\\fB\\-\\-size\\fR \\fIN\\fR\nHow large [3]\n"),
              HasSubstr(".SS Manners\n.TP\n\\fB\\-y\\fR, \\fB\\-\\-yes\\fR\nAsk nothing\n"), Not(HasSubstr("secret"))));
}

TEST_F(ManualPages, EndWithWhatTheHelpEndsWith) {
    EXPECT_THAT(PageOf("maker-make"), HasSubstr(".SH NOTES\nIt is made at once.\n.SH EXIT STATUS\n0 made\n"));
}

TEST_F(ManualPages, PointToEachOther) {
    EXPECT_THAT(PageOf("maker-make"), HasSubstr(".SH SEE ALSO\n\\fBmaker\\fR(1)\n"));
    EXPECT_THAT(PageOf("maker"), HasSubstr(".SH SEE ALSO\n\\fBmaker\\-make\\fR(1),\n\\fBshaper\\fR(1)\n"));
}

}  // namespace
