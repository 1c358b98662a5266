#include "Host/Lineup/Check/Reader/RecordingName.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

namespace {

using lineup::ParseRecordingName;
using lineup::RecordingName;
using Kind = RecordingName::Kind;

class RecordingNames : public test::TestFolder {};

TEST_F(RecordingNames, AreFilesUnlessTheySayOtherwise) {
    for (const char* const name : {"a.wav", "/b/c.mov", "1:2.wav", "a b://c", "://x", "-.wav", "", "C:\\take.wav"}) {
        EXPECT_EQ(ParseRecordingName(name).kind, Kind::File) << name;
        EXPECT_EQ(ParseRecordingName(name).text, name);
    }
}

TEST_F(RecordingNames, AreUrlsWithASchemeInFront) {
    for (const char* const name : {"srt://host:1234?mode=caller", "rtp://239.0.0.1:5004", "http://h/x.ts",
                                   "unix:///run/x", "data:audio/wav;base64,UklGRg=="}) {
        EXPECT_EQ(ParseRecordingName(name).kind, Kind::Url) << name;
        EXPECT_EQ(ParseRecordingName(name).text, name);
    }
}

TEST_F(RecordingNames, AreStandardInputForADash) {
    EXPECT_EQ(ParseRecordingName("-").kind, Kind::StandardInput);
}

TEST_F(RecordingNames, AreFilesWhereThereIsOneOfThatName) {
    const auto file = Folder() / "http:" / "take.wav";
    test::WriteFile(file, "x");
    const std::string name = Folder().string() + "/http://take.wav";
    EXPECT_EQ(ParseRecordingName(name).kind, Kind::File);
}

TEST_F(RecordingNames, MayNameAFileAsAUrl) {
    EXPECT_EQ(ParseRecordingName("file:take.wav").text, "take.wav");
    EXPECT_EQ(ParseRecordingName("file:///there/take.wav").text, "/there/take.wav");
    EXPECT_EQ(ParseRecordingName("file:take.wav").kind, Kind::File);
}

TEST_F(RecordingNames, AreTheStreamThatASessionDescriptionDescribes) {
    const std::string session = "v=0\r\nm=audio 5004 RTP/AVP 96\r\n";
    struct Row {
        const char* file;
        std::string text;
        Kind kind;
    };
    for (const Row& row :
         {Row{"a.sdp", session, Kind::Url}, Row{"a.txt", session, Kind::File}, Row{"b.sdp", "RIFF", Kind::File},
          Row{"c.sdp", session + '\0', Kind::File}, Row{"d.sdp", session + std::string(65536, ' '), Kind::File}}) {
        const std::string name = Folder() / row.file;
        test::WriteFile(name, row.text);
        for (const std::string& written : {name, "file://" + name}) {
            EXPECT_EQ(ParseRecordingName(written).kind, row.kind) << written;
            EXPECT_EQ(ParseRecordingName(written).text,
                      row.kind == Kind::Url ? "data:application/sdp," + session : name);
        }
    }
}

}  // namespace
