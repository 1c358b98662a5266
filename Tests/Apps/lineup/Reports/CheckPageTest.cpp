// What a browser and a server for continuous integration get.
#include "Apps/lineup/Reports/CheckJunit.h"
#include "Apps/lineup/Reports/CheckLanes.h"
#include "Apps/lineup/Reports/CheckPage.h"
#include "Apps/lineup/Reports/CheckScopes.h"
#include "Apps/lineup/Reports/Markup.h"
#include "Apps/lineup/Reports/PatchTable.h"
#include "Tests/Apps/lineup/Reports/CheckReports.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::Not;

class CheckPages : public test::TestFolder {
protected:
    // What Python's own parser says of it: the names of all elements, or the error.
    std::string Parse(const std::string& xml) const {
        test::WriteFile(Folder() / "page.xml", xml);
        const auto result = test::RunProgram(
            "python3 -c \"import sys,xml.etree.ElementTree as e;"
            "print(*sorted({x.tag.split('}')[-1] for x in e.parse(sys.argv[1]).iter()}))\" '" +
                (Folder() / "page.xml").string() + "'",
            Folder());
        return result.exitCode == 0 ? result.out : result.err;
    }
};

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

const std::vector<lineup::CheckReport> kThree = {test::RightCheckReport(), test::FaultyCheckReport(),
                                                 test::UnreadableCheckReport()};

TEST_F(CheckPages, AreWellFormedWhateverTheyHold) {
    std::vector<lineup::CheckReport> reports = kThree;
    reports[0].source = "<script>&\"'\x01\xff</script>";
    reports[1].faults[0].text = "]]> <b>";
    EXPECT_EQ(Parse(cli::CheckDrawing(reports)), "g path polygon rect svg text title\n");
    EXPECT_EQ(Parse(cli::CheckJunit(reports)), "error failure system-out testcase testsuite testsuites\n");
    EXPECT_THAT(cli::CheckPage(reports), Not(HasSubstr("<script>")));
    EXPECT_THAT(cli::CheckPage(reports), Not(HasSubstr("<b>")));
}

TEST_F(CheckPages, HaveALaneForEachInputWithWhatWasDue) {
    const std::string lanes = cli::CheckLanes(test::RightCheckReport());
    EXPECT_EQ(Count(lanes, "class=\"found\""), 6U);
    EXPECT_EQ(Count(lanes, "class=\"expected\""), 6U);
    EXPECT_EQ(Count(lanes, "class=\"fault\""), 0U);
    EXPECT_THAT(lanes, HasSubstr(">4 LFE<"));
}

TEST_F(CheckPages, MarkTimesAndThePlacesOfFaults) {
    const std::string lanes = cli::CheckLanes(test::FaultyCheckReport());
    // 4.5 s of a drawing from 3 s to 5 s: three quarters of 900 pixels right of the 90th.
    EXPECT_THAT(lanes, HasSubstr("class=\"fault\" d=\"M765.0 "));
    EXPECT_EQ(Count(lanes, "class=\"fault\""), 1U);
    // The time in the middle, under the last of six lanes of 62 pixels.
    EXPECT_THAT(lanes,
                testing::ContainsRegex("<path d=\"M540.0 6 V378.0\"[^>]*><text x=\"540.0\" y=\"394.0\"[^>]*>4.0 s<"));
}

// Two samples a column. From silence up to full scale in the middle of the 900 columns, a point where the height
// changes.
TEST_F(CheckPages, DrawTheHighestOfTheSamplesThatShareAColumn) {
    lineup::CheckReport report = test::RightCheckReport();
    report.sound->lanes.expected.clear();
    report.sound->lanes.found.assign(1, std::vector<float>(1800));
    std::vector<float>& lane = report.sound->lanes.found[0];
    for (std::size_t n = 901; n < lane.size(); n += 2) {
        lane[n] = -1;
    }
    EXPECT_THAT(cli::CheckLanes(report), HasSubstr("points=\"90,33.0 90,33.0 540,33.0 540,7.2 990,7.2 990,33.0 "
                                                   "990,33.0 990,58.8 540,58.8 540,33.0 90,33.0 90,33.0\""));
}

TEST_F(CheckPages, DrawNoLanesWhereThereAreNone) {
    EXPECT_EQ(cli::CheckLanesHeight(test::UnreadableCheckReport()), 0);
    EXPECT_EQ(cli::CheckLanes(test::UnreadableCheckReport()), "");
    EXPECT_THAT(cli::CheckPage(std::vector{test::UnreadableCheckReport()}), Not(HasSubstr("<svg")));
}

TEST_F(CheckPages, DrawTheCardWithWhatIsDueAndWhatWasFoundOfIt) {
    lineup::CheckReport report;
    lineup::PictureReport& picture = report.picture.emplace();
    picture.card = "hd";
    picture.width = 1920;
    picture.height = 1080;
    picture.patches = {
        {.name = "75 % yellow", .expected = {168, 44, 136}, .measured = {161, 44, 142}, .off = 7, .isOff = true},
        {.name = "40 % grey", .expected = {104, 128, 128}, .measured = {104, 128, 128}}};
    const std::string drawing = cli::CheckScopes(report);
    EXPECT_EQ(Count(drawing, "class=\"off\""), 1U);
    EXPECT_EQ(Count(drawing, "class=\"due\""), 4U);  // in the vectorscope and in the waveform
    EXPECT_EQ(Count(drawing, "class=\"found\""), 4U);
    const auto table = cli::MakePatchTable(report, true);
    EXPECT_THAT(table.rows[0], testing::ElementsAre("75 % yellow", "161.0", "44.0", "142.0", "168.0", "44.0", "136.0"));
    EXPECT_THAT(table.remarks, testing::ElementsAre("off by 7.0", ""));
    EXPECT_EQ(cli::MakePatchTable(report, false).rows.size(), 1U);
}

TEST_F(CheckPages, SayWhatTheTerminalSays) {
    const std::string page = cli::CheckPage(kThree);
    EXPECT_THAT(page, HasSubstr("<h2>take &lt;1&gt;.mov</h2>"));
    EXPECT_THAT(page, HasSubstr("<strong>nothing wrong</strong>"));
    EXPECT_THAT(page, HasSubstr("<code>polarity-inverted</code> C (input 3) is upside down."));
    EXPECT_THAT(page, HasSubstr("The LFE is filtered &amp; quiet."));
    EXPECT_THAT(page, HasSubstr("there is no such file"));
    EXPECT_EQ(Count(page, "<svg"), 2U);
    EXPECT_EQ(Count(page, "<table>"), 2U);
}

TEST_F(CheckPages, ForServersCountFailuresAndErrors) {
    const std::string xml = cli::CheckJunit(kThree);
    const auto kinds = lineup::CheckFaultKinds();
    const auto ofSound = std::ranges::count(kinds, lineup::CheckPart::Sound, &lineup::CheckFaultKind::part);
    EXPECT_THAT(xml, HasSubstr("<testsuites name=\"lineup check\" tests=\"" + std::to_string(2 * ofSound + 1) +
                               "\" failures=\"2\" errors=\"1\">"));
    EXPECT_THAT(xml, HasSubstr("<testcase classname=\"lineup.check.sound\" name=\"polarity-inverted\">\n"
                               "      <failure type=\"polarity-inverted\" message=\"upside down\">"
                               "C (input 3) is upside down.</failure>"));
    EXPECT_THAT(xml, HasSubstr("<error type=\"cannot-tell\""));
    EXPECT_THAT(xml, Not(HasSubstr("lineup.check.picture")));
}

TEST(Markup, EscapesWhatMeansSomethingInIt) {
    EXPECT_EQ(cli::Escaped("a<b>&\"c\"'d'\x1b[2J\n\xc3\xa9"), "a&lt;b&gt;&amp;&quot;c&quot;&#39;d&#39;?[2J\n\xc3\xa9");
    EXPECT_EQ(cli::Escaped("\xff"), "\xEF\xBF\xBD");
}

}  // namespace
