#include "Apps/lineup/Reports/CheckJson.h"
#include "Tests/Apps/lineup/Reports/CheckReports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <vector>

namespace {

using nlohmann::ordered_json;

// The names of an object's fields, in their order.
std::vector<std::string> Fields(const ordered_json& object) {
    std::vector<std::string> names;
    for (const auto& [name, value] : object.items()) {
        names.push_back(name);
    }
    return names;
}

TEST(CheckJson, HasEveryFieldOfItsSchemaInItsOrder) {
    const ordered_json json = ordered_json::parse(cli::CheckJson(test::FaultyCheckReport()));
    using testing::ElementsAre;
    EXPECT_THAT(Fields(json), ElementsAre("schema", "source", "verdict", "sound", "picture", "faults", "notes"));
    EXPECT_THAT(Fields(json["sound"]),
                ElementsAre("expected", "sampleRate", "inputs", "startsAt", "cycles", "speed", "channels"));
    EXPECT_THAT(Fields(json["sound"]["speed"]), ElementsAre("ratio", "ppm"));
    EXPECT_THAT(Fields(json["sound"]["channels"][0]),
                ElementsAre("input", "channel", "polarity", "level", "gain", "delay", "noise", "distortion", "dc",
                            "effectiveBits"));
    EXPECT_THAT(Fields(json["faults"][0]),
                ElementsAre("id", "part", "inputs", "channels", "measured", "expected", "unit", "at", "text"));
    EXPECT_THAT(Fields(json["notes"][0]), ElementsAre("id", "part", "text"));
}

TEST(CheckJson, SaysWhatTheReportSays) {
    const ordered_json json = ordered_json::parse(cli::CheckJson(test::FaultyCheckReport()));
    EXPECT_EQ(json["schema"], "lineup-check/1");
    EXPECT_EQ(json["source"], "take <1>.mov");
    EXPECT_EQ(json["verdict"], "faults");
    EXPECT_EQ(json["sound"]["expected"], "blits");
    EXPECT_EQ(json["sound"]["sampleRate"], 48000);
    EXPECT_EQ(json["sound"]["startsAt"], 3.2144);
    EXPECT_EQ(json["sound"]["speed"]["ppm"], 1);
    EXPECT_EQ(json["sound"]["channels"][4],
              ordered_json::parse(R"({"input": 4, "channel": "Ls", "polarity": 1, "level": -18.06, "gain": -0.001,
                  "delay": 0.25, "noise": -120.6, "distortion": -118.0, "dc": 0.0, "effectiveBits": 24})"));
    EXPECT_EQ(json["faults"][0],
              ordered_json::parse(R"({"id": "polarity-inverted", "part": "sound", "inputs": [2], "channels": ["C"],
                  "measured": -1.0, "expected": 1.0, "unit": "", "at": null, "text": "C (input 3) is upside down."})"));
    EXPECT_EQ(json["faults"][1]["at"], 4.5);
    EXPECT_EQ(json["notes"][0]["part"], "sound");
}

TEST(CheckJson, IsNullWhereNothingWasMeasured) {
    const ordered_json channel = ordered_json::parse(cli::CheckJson(test::FaultyCheckReport()))["sound"]["channels"][3];
    EXPECT_EQ(channel["input"], 3);
    for (const char* const field :
         {"channel", "polarity", "level", "gain", "delay", "noise", "distortion", "dc", "effectiveBits"}) {
        EXPECT_TRUE(channel[field].is_null()) << field;
    }
    lineup::CheckReport bare;
    bare.sound.emplace();
    const ordered_json sound = ordered_json::parse(cli::CheckJson(bare))["sound"];
    for (const char* const field : {"expected", "sampleRate", "startsAt", "cycles", "speed"}) {
        EXPECT_TRUE(sound[field].is_null()) << field;
    }
}

TEST(CheckJson, IsNullForAPartThatThereIsNot) {
    const ordered_json json = ordered_json::parse(cli::CheckJson(test::UnreadableCheckReport()));
    EXPECT_EQ(json["verdict"], "cannot-tell");
    EXPECT_TRUE(json["sound"].is_null());
    EXPECT_TRUE(json["picture"].is_null());
    EXPECT_EQ(json["faults"], ordered_json::array());
    EXPECT_EQ(json["notes"][0]["part"], "both");
}

TEST(CheckJson, IsNullForWhatIsNoNumber) {
    lineup::CheckReport report = test::RightCheckReport();
    report.sound->channels[0].level = -std::numeric_limits<double>::infinity();
    report.sound->channels[0].noise = std::numeric_limits<double>::quiet_NaN();
    const ordered_json channel = ordered_json::parse(cli::CheckJson(report))["sound"]["channels"][0];
    EXPECT_TRUE(channel["level"].is_null());
    EXPECT_TRUE(channel["noise"].is_null());
}

TEST(CheckJson, HasAPictureWhereThereIsOne) {
    lineup::CheckReport report;
    lineup::PictureReport& picture = report.picture.emplace();
    picture.card = "hd";
    picture.width = 1920;
    picture.codes = {.matrix = "bt709", .primaries = "", .transfer = "", .range = "limited"};
    picture.place = lineup::CardPlace{.x = 0.25, .width = 1920, .mirrored = true};
    picture.quality.ringing = 8.5;
    picture.patches.push_back({.name = "75 % yellow", .expected = {168, 44, 136}, .measured = {168, 44, 135.5}});
    const ordered_json json = ordered_json::parse(cli::CheckJson(report))["picture"];
    EXPECT_THAT(Fields(json), testing::ElementsAre("card", "width", "height", "bits", "codes", "tags", "place",
                                                   "quality", "explanation", "patches"));
    EXPECT_EQ(json["codes"], ordered_json::parse(R"({"matrix": "bt709", "range": "limited"})"));
    EXPECT_THAT(Fields(json["tags"]), testing::ElementsAre("matrix", "primaries", "transfer", "range", "pixelAspect"));
    EXPECT_TRUE(json["tags"]["matrix"].is_null());
    EXPECT_THAT(Fields(json["place"]), testing::ElementsAre("x", "y", "width", "height", "mirrored", "flipped"));
    EXPECT_EQ(json["place"]["mirrored"], true);
    EXPECT_EQ(json["quality"]["ringing"], 8.5);
    EXPECT_TRUE(json["quality"]["blocking"].is_null());
    EXPECT_TRUE(json["explanation"].is_null());
    picture.explanation = {.error = 0.5, .next = "", .nextError = 4.25};
    EXPECT_EQ(ordered_json::parse(cli::CheckJson(report))["picture"]["explanation"],
              ordered_json::parse(R"({"error": 0.5, "next": null, "nextError": 4.25})"));
    EXPECT_EQ(json["patches"][0]["measured"][2], 135.5);
}

TEST(CheckJson, IsOneLineWhateverTheRecordingIsCalled) {
    lineup::CheckReport report = test::RightCheckReport();
    report.source = "a\nb \xff\xfe.wav";
    const std::string json = cli::CheckJson(report);
    EXPECT_EQ(json.find('\n'), std::string::npos);
    EXPECT_EQ(ordered_json::parse(json)["source"], "a\nb \xEF\xBF\xBD\xEF\xBF\xBD.wav");
}

}  // namespace
