#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include "Apps/lineup/Commands/PeaksCommand.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class PeaksCommand : public test::TestFolder {
protected:
    // Runs `lineup peaks NAME ARGUMENTS --quiet` with NAME in the test's own folder.
    void Peaks(const std::string& name, const std::string& arguments) const {
        CLI::App app;
        cli::AddPeaksCommand(app);
        app.parse("peaks '" + File(name).string() + "' " + arguments + " --quiet --plugin '" TEST_BUNDLE "'");
    }
    [[nodiscard]] nlohmann::json Json(const std::string& arguments) const {
        Peaks("out.json", arguments + " -y");
        return nlohmann::json::parse(test::ReadFile(File("out.json")));
    }
    [[nodiscard]] fs::path File(const std::string& name) const { return Folder() / name; }

    // A refusal names the option and what is right, and writes nothing.
    void ExpectRefusal(const std::string& name, const std::string& arguments, const std::string& text) const {
        try {
            Peaks(name, arguments);
            ADD_FAILURE() << "not refused: " << arguments;
        } catch (const lineup::UsageError& error) {
            EXPECT_THAT(error.what(), HasSubstr(text));
        }
        EXPECT_TRUE(fs::is_empty(Folder()));
    }
};

TEST_F(PeaksCommand, WritesEachKindOfFile) {
    Peaks("a.png", "");
    Peaks("b.SVG", "--dark --width 800 --height 300");
    Peaks("c.json", "");
    EXPECT_EQ(test::ReadFile(File("a.png")).substr(1, 3), "PNG");
    EXPECT_THAT(test::ReadFile(File("b.SVG")), HasSubstr("viewBox=\"0 0 800 300\""));
    EXPECT_EQ(nlohmann::json::parse(test::ReadFile(File("c.json")))["columns"], 1200);
    EXPECT_EQ(std::distance(fs::directory_iterator(Folder()), fs::directory_iterator()), 3);  // and nothing else
}

TEST_F(PeaksCommand, ShowsTheClipOrACycleUnlessALengthIsGiven) {
    EXPECT_EQ(Json("")["lengthSeconds"], 5.0);
    EXPECT_EQ(Json("--ident blits")["lengthSeconds"], 13.4);
    EXPECT_EQ(Json("--ident ebu-stereo-400 --cycles 3")["lengthSeconds"], 9.0);
    EXPECT_EQ(Json("--duration 1:30")["lengthSeconds"], 90.0);
}

TEST_F(PeaksCommand, StartsWhereItIsTold) {
    const auto json = Json("--ident ebu-stereo-1000 --start 2.75 --duration 0.5 --width 400");
    EXPECT_EQ(json["startSample"], 132000);
    EXPECT_EQ(json["channels"][0]["max"][0], 0.0);      // the gap
    EXPECT_EQ(json["channels"][0]["max"][199], 0.0);    // 2.99875 s
    EXPECT_EQ(json["channels"][0]["max"][200], 0.125);  // 3 s
    EXPECT_EQ(json["channels"][1]["min"][0], -0.125);
    EXPECT_EQ(Json("--start -1")["startSeconds"], -1.0);
}

TEST_F(PeaksCommand, NeverReplacesAFileWithoutConsent) {
    std::ofstream(File("a.json")) << "precious";
    EXPECT_THROW(Peaks("a.json", ""), lineup::UsageError);
    EXPECT_EQ(test::ReadFile(File("a.json")), "precious");
    Peaks("a.json", "-y");
    EXPECT_THAT(test::ReadFile(File("a.json")), HasSubstr("\"channels\""));
}

TEST_F(PeaksCommand, RefusesWhatItCannotDo) {
    ExpectRefusal("a.gif", "", "a.gif: the name must end in .png, .svg or .json");
    ExpectRefusal("a", "", "the name must end in .png, .svg or .json");
    ExpectRefusal("a.png", "--width 399", "width 399: must be a whole number from 400 to 8192");
    ExpectRefusal("a.png", "--width 8193", "width 8193: must be");
    ExpectRefusal("a.png", "--width 800.5", "width 800.5: must be");
    ExpectRefusal("a.png", "--width wide", "width wide: must be a number of pixels");
    ExpectRefusal("a.png", "--height 20", "height 20: must be a whole number from 162 to 8192");
    ExpectRefusal("a.json", "--height 500", "height 500: has no effect on a .json file");
    ExpectRefusal("a.json", "--dark", "dark yes: has no effect on a .json file");
    ExpectRefusal("a.png", "--duration 0", "duration 0: must be above 0");
    ExpectRefusal("a.png", "--duration 0.0001", "duration 0.0001: must be at least");
    ExpectRefusal("a.png", "--cycles 2", "cycles 2: counts the cycles of an ident");
    ExpectRefusal("a.png", "--start soon", "start soon: must be seconds");
}

TEST_F(PeaksCommand, SaysWhyAFileCannotBeWritten) {
    try {
        Peaks("nowhere/a.png", "");
        ADD_FAILURE() << "not refused";
    } catch (const lineup::Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("No such file or directory"));
    }
}

}  // namespace
