#include <lineup/ClipDocument.h>
#include <lineup/Error.h>
#include <lineup/SettingsFile.h>
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace {

namespace fs = std::filesystem;
using lineup::ClipDocument;
using testing::HasSubstr;

const std::string kSound =
    "01000000"
    "00803b47"
    "02000000"
    "02000000"
    "00000000"
    "00007a44"
    "0000803e"
    "00000000";

// A document file in which `from` reads `to`.
std::string Changed(const std::string& from = "", const std::string& to = "") {
    std::string text = R"({"kind": "lineup", "version": 1, "settings": ")" + kSound +
                       R"(", "picture": {"width": 1920, "height": 1080, "card": "auto", "frameRate": [25, 1]},
                           "lengthFrames": 125})";
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

class ClipDocumentFile : public test::TestFolder {
protected:
    [[nodiscard]] fs::path File() const { return Folder() / "clip.lineup"; }

    [[nodiscard]] ClipDocument Read(const std::string& text) const {
        test::WriteFile(File(), text);
        return lineup::ReadDocument(File());
    }

    [[nodiscard]] std::string Complaint(const std::string& text) const {
        try {
            (void)Read(text);
        } catch (const lineup::Error& error) {
            return error.what();
        }
        return "none";
    }
};

TEST_F(ClipDocumentFile, GivesBackWhatWasWritten) {
    ClipDocument document;
    document.settings.frequency = std::numeric_limits<float>::quiet_NaN();
    document.settings.version = 7;
    document.picture = {720, 576, lineup::Card::HD, {30000, 1001}};
    document.lengthFrames = 4711;
    WriteDocument(File(), document, false);
    EXPECT_EQ(lineup::ReadDocument(File()), document);
}

TEST_F(ClipDocumentFile, AnotherOneDiffersInAnyPart) {
    for (const auto& [from, to] : {std::pair("00007a44", "0000dc43"), {"1080", "720"}, {"125}", "126}"}}) {
        EXPECT_NE(Read(Changed(from, to)), ClipDocument()) << from;
    }
}

TEST_F(ClipDocumentFile, IsReadAsItIsDescribed) {
    EXPECT_EQ(Read(Changed()), ClipDocument());
}

TEST_F(ClipDocumentFile, PassesOverWhatItDoesNotKnow) {
    EXPECT_EQ(Read(Changed(R"("version")", R"("note": {"a": [1]}, "version")")), ClipDocument());
}

TEST_F(ClipDocumentFile, ServesAsASettingsFile) {
    (void)Read(Changed("00007a44", "0000dc43"));
    EXPECT_EQ(lineup::ReadSettings(File()).frequency, 440.0F);
}

TEST_F(ClipDocumentFile, ARecordThatBeginsLikeADocumentIsARecord) {
    test::WriteFile(File(), "{" + std::string(31, '\0'));
    EXPECT_EQ(lineup::ReadSettings(File()).version, std::uint32_t{'{'});
}

TEST_F(ClipDocumentFile, SaysWhatIsWrongWithAForeignFile) {
    const std::string prefix = "cannot open " + File().string() + ": ";
    for (const std::string& foreign :
         {std::string(), std::string("\x89PNG\r\n\x1a\n\0\0", 10), std::string("{}"), std::string("[1]"),
          std::string("{\"kind\": 3}"), Changed("lineup", "movie"), Changed().substr(0, 90), std::string(60000, '[')}) {
        EXPECT_EQ(Complaint(foreign), prefix + "it is no Lineup document");
    }
    EXPECT_EQ(Complaint(std::string(70000, ' ')), prefix + "it is no Lineup document: it is too large");
    EXPECT_EQ(Complaint(Changed("1,", "2,")),
              prefix + "it is a Lineup document of version 2, and this program reads version 1");
}

TEST_F(ClipDocumentFile, SaysWhichValueIsDamaged) {
    EXPECT_THAT(Complaint(Changed("1920", "0")), HasSubstr("\"width\" must be a whole number from 2 to 8192"));
    EXPECT_THAT(Complaint(Changed("1920", "1919")), HasSubstr("\"width\" must be even"));
    EXPECT_THAT(Complaint(Changed("1080", "1e3")), HasSubstr("\"height\" must be a whole number"));
    EXPECT_THAT(Complaint(Changed("1080", "18446744073709551615")), HasSubstr("\"height\" must be a whole number"));
    EXPECT_THAT(Complaint(Changed("\"auto\"", "\"uhd\"")), HasSubstr(R"("card" must be "auto", "hd" or "sd")"));
    EXPECT_THAT(Complaint(Changed("[25, 1]", "25")), HasSubstr("\"frameRate\" must be two whole numbers"));
    EXPECT_THAT(Complaint(Changed("[25, 1]", "[25, 0]")), HasSubstr("\"frameRate\" must be a whole number from 1"));
    EXPECT_THAT(Complaint(Changed("[25, 1]", "[1, 25]")), HasSubstr("\"frameRate\" must be a whole number from 25"));
    EXPECT_THAT(Complaint(Changed("125}", "0}")), HasSubstr("\"lengthFrames\" must be a whole number from 1"));
    EXPECT_THAT(Complaint(Changed("00803b47", "0080")), HasSubstr("\"settings\" must be 64 hexadecimal digits"));
    EXPECT_THAT(Complaint(Changed("00803b47", "0080XY47")), HasSubstr("\"settings\" must be 64 hexadecimal digits"));
    EXPECT_THAT(Complaint(Changed("\"lengthFrames\"", "\"length\"")), HasSubstr("\"lengthFrames\" is missing"));
    EXPECT_THAT(Complaint(Changed(R"({"width")", R"(3, "was": {"width")")), HasSubstr("\"picture\" must be an object"));
}

TEST_F(ClipDocumentFile, AFileThatIsNotThereIsSaid) {
    EXPECT_THROW((void)lineup::ReadDocument(Folder() / "none.lineup"), lineup::Error);
    EXPECT_THROW((void)lineup::ReadDocument(Folder()), lineup::Error);
}

}  // namespace
