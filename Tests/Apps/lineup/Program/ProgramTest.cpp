#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Program : public test::TestFolder {
protected:
    // Runs `lineup ARGUMENTS` in the test's own folder.
    [[nodiscard]] test::RunResult Lineup(const std::string& arguments) const {
        return test::RunProgram("cd '" + Folder().string() + "' && '" TEST_LINEUP "' " + arguments, Folder());
    }
    [[nodiscard]] bool Exists(const char* name) const { return fs::exists(Folder() / name); }

    // The files in the folder but for what RunProgram keeps there.
    [[nodiscard]] std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(Folder())) {
            if (entry.path().filename() != "stderr.txt") {
                names.push_back(entry.path().filename().string());
            }
        }
        return names;
    }

    // A refusal ends with 2, says `text`, and writes nothing.
    void ExpectRefusal(const std::string& arguments, const std::string& text) const {
        const auto result = Lineup(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments << "\n" << result.err;
        EXPECT_THAT(result.err, HasSubstr(text)) << arguments;
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(Files(), IsEmpty());
    }
};

TEST_F(Program, HelpTeachesEveryCommand) {
    const auto result = Lineup("--help");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, AllOf(HasSubstr("render"), HasSubstr("frame"), HasSubstr("info"), HasSubstr("Examples")));
}

TEST_F(Program, HelpOfRenderListsEveryKindOfFile) {
    const auto result = Lineup("render --help");
    EXPECT_EQ(result.exitCode, 0);
    for (const char* const text : {".mov", ".mkv", ".mp4", ".mxf", ".wav", "prores", "--timecode", "--ident"}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST_F(Program, VersionIsThatOfTheProject) {
    std::string version = test::ReadFile(TEST_SOURCE_DIR "/VERSION");
    version.erase(version.find_last_not_of('\n') + 1);
    EXPECT_THAT(Lineup("--version").out, HasSubstr("lineup " + version));
}

TEST_F(Program, TellsShellsWhatCouldComeNext) {
    EXPECT_EQ(Lineup("complete -- render a.mov --ident bl").out, "none\nblits\t\n");
    EXPECT_EQ(Lineup("complete -- info --plugin ''").out, "folders\n");
    EXPECT_EQ(Lineup("complete -- render -- --help").out, "files\n");
}

TEST_F(Program, WithoutACommandIsUsedWrongly) {
    EXPECT_EQ(Lineup("").exitCode, 2);
    EXPECT_EQ(Lineup("dance").exitCode, 2);
    EXPECT_EQ(Lineup("render").exitCode, 2);
    EXPECT_EQ(Lineup("render a.wav --colour blue").exitCode, 2);
}

TEST_F(Program, InfoTellsWhatThePluginSays) {
    const auto report = json::parse(Lineup("info --json --ident blits --sample-rate 96000").out);
    EXPECT_EQ(report["plugin"]["fileTypes"], json::array({"XQNV"}));
    EXPECT_EQ(report["plugin"]["pixelFormats"], json::array({"VUx7"}));
    EXPECT_EQ(report["plugin"]["settingsBytes"], 32);
    EXPECT_EQ(report["clip"]["numChannels"], 6);
    EXPECT_EQ(report["clip"]["durationSamples"], 480000);
    EXPECT_THAT(Lineup("info").out, HasSubstr("1000 Hz at -12.04 dBFS peak"));
}

// The settings of another plug-in are bytes that mean something to it alone.
TEST_F(Program, InfoSaysOfAnotherPluginOnlyWhatItAnswers) {
    const std::string clicks = "info --plugin '" TEST_BUNDLES "/ClickImporter.bundle' ";
    const auto table = Lineup(clicks);
    EXPECT_EQ(table.exitCode, 0) << table.err;
    EXPECT_THAT(table.out, HasSubstr("File types    none listed\n"));
    EXPECT_THAT(table.out, HasSubstr("Settings      12 bytes of its own\n"));
    EXPECT_THAT(table.out, HasSubstr("Picture       any size\n"));
    EXPECT_THAT(table.out, HasSubstr("Sound         3 channels, 48000 Hz\n"));
    EXPECT_THAT(table.out, HasSubstr("Length        60.000 s (2880000 samples)\n"));
    EXPECT_THAT(table.out, Not(HasSubstr("Signal")));
    const auto report = json::parse(Lineup(clicks + "--json").out);
    EXPECT_EQ(report["plugin"]["settingsBytes"], 12);
    EXPECT_EQ(report["clip"]["numChannels"], 3);
    EXPECT_FALSE(report["clip"].contains("signal"));

    // One whose settings have the size of ours.
    EXPECT_THAT(Lineup("info --plugin '" TEST_BUNDLES "/Grey.bundle'").out, Not(HasSubstr("dBFS")));

    const auto refused = Lineup(clicks + "--frequency 440");
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("leave out --frequency"));
}

TEST_F(Program, InfoTellsWhatAPluginDoesNotSay) {
    const std::string refusing = "info --plugin '" TEST_BUNDLES "/RefusesEverything.bundle' ";
    EXPECT_THAT(Lineup(refusing).out, HasSubstr("Sound         not described without settings\n"));
    const auto report = json::parse(Lineup(refusing + "--json").out);
    EXPECT_EQ(report["clip"], nullptr);
    EXPECT_EQ(report["plugin"]["settingsBytes"], nullptr);
}

TEST_F(Program, RenderSaysWhatItWrote) {
    const auto result = Lineup("render out.wav --duration 0.5 --json");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto report = json::parse(result.out);
    EXPECT_EQ(report["file"], "out.wav");
    EXPECT_EQ(report["audio"][0]["samples"], 24000);
    EXPECT_EQ(report["bytes"], fs::file_size(Folder() / "out.wav"));
}

TEST_F(Program, QuietSaysNothing) {
    const auto result = Lineup("render out.wav --duration 0.1 --quiet");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out + result.err, IsEmpty());
    EXPECT_TRUE(Exists("out.wav"));
}

TEST_F(Program, ThereIsNoProgressBarInAFile) {
    EXPECT_THAT(Lineup("render out.mov --size 64x36 --duration 1").err, IsEmpty());
}

TEST_F(Program, CyclesAreWholeCycles) {
    const auto report = json::parse(Lineup("render out.wav --ident ebu-stereo-1000 --cycles 2 --json").out);
    EXPECT_EQ(report["audio"][0]["samples"], 288000);
}

TEST_F(Program, ALengthMayBeFramesOrTheirLabels) {
    struct Case {
        const char* arguments;
        int samples;
    };
    for (const Case& of : {Case{"--frames 30 --fps 30000/1001", 48048}, Case{"--frames 1 --fps 24", 2000},
                           Case{"--fps 29.97 --timecode '00:59:30;00' --until '01:00:00;00'", 900 * 8008 / 5},
                           Case{"--timecode 23:59:59:00 --until 00:00:00:05", 30 * 1920},
                           Case{"--fps 29.97 --timecode '23:59:59;00' --until '00:00:00;00'", 48048},
                           Case{"--fps 29.97 --duration '00:00:30;00'", 900 * 8008 / 5},
                           Case{"--fps 25 --duration 00:00:01:05", 30 * 1920}, Case{"--duration 1.5", 72000}}) {
        const auto result = Lineup(std::string("render a.wav -y --json ") + of.arguments);
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(json::parse(result.out)["audio"][0]["samples"], of.samples) << of.arguments;
    }
    EXPECT_EQ(json::parse(Lineup("render a.mov --size 64x36 --frames 3 --json").out)["video"]["frames"], 3);
}

TEST_F(Program, BlackFollowsTheClipOrEndsAtTheLabel) {
    const auto counts = [this](const std::string& arguments) {
        const auto report = json::parse(Lineup("render a.wav -y --json " + arguments).out);
        return std::pair(report["audio"][0]["samples"].get<int>(), report["black"]["samples"].get<int>());
    };
    EXPECT_EQ(counts("--duration 1 --black 0.5"), std::pair(72000, 24000));
    EXPECT_EQ(counts("--duration 00:00:01:00 --black 00:00:00:05"), std::pair(57600, 9600));
    EXPECT_EQ(counts("--timecode 09:59:57:00 --until 10:00:00:00 --black 1"), std::pair(144000, 48000));
    EXPECT_THAT(Lineup("render a.wav -y --timecode 09:59:59:00 --until 10:00:00:00 --black 1").err,
                HasSubstr("--black 1: leaves nothing of the line-up before 10:00:00:00"));
}

TEST_F(Program, WritesIntoAPipeWhatGoesFromFrontToBack) {
    const auto wave = Lineup("render - --format wav --duration 0.2 --reproducible");
    EXPECT_THAT(wave.err, HasSubstr("wrote standard output: wav"));
    EXPECT_EQ(Lineup("render b.wav --duration 0.2 --reproducible -q").exitCode, 0);
    EXPECT_TRUE(wave.out == test::ReadFile(Folder() / "b.wav"));
    std::ofstream(Folder() / "a.mkv") << Lineup("render - --format mkv --duration 0.2 --size 64x36 -q").out;
    const auto probe = test::RunProgram(
        "ffprobe -v error -count_packets -show_entries stream=nb_read_packets -of "
        "csv=p=0 '" +
            (Folder() / "a.mkv").string() + "'",
        Folder());
    EXPECT_THAT(probe.err, IsEmpty());
    EXPECT_THAT(probe.out, HasSubstr("5\n"));
    EXPECT_THAT(Lineup("render - --format mxf").err, HasSubstr("--format mxf: is not written from front to back"));
    EXPECT_THAT(Lineup("render -").err, HasSubstr("output -: needs --format mov, mkv, mp4, ts, wav"));
}

TEST_F(Program, AReproducibleFileHasTheSameBytesEachTime) {
    for (const std::string name : {"a.wav", "a.mxf", "a.mov", "a.mkv"}) {
        std::array<std::string, 2> bytes;
        for (std::string& of : bytes) {
            const std::string command = "render " + name + " --duration 0.2 --size 64x36 --reproducible -q -y";
            ASSERT_EQ(Lineup(name == "a.wav" ? "render a.wav --duration 0.2 --reproducible -q -y" : command).exitCode,
                      0);
            of = test::ReadFile(Folder() / name);
        }
        EXPECT_TRUE(bytes[0] == bytes[1]) << name;
    }
    const auto dated = test::RunProgram(
        "cd '" + Folder().string() + "' && SOURCE_DATE_EPOCH=86399 '" TEST_LINEUP "' render b.wav --duration 0.1 -q",
        Folder());
    EXPECT_EQ(dated.exitCode, 0) << dated.err;
    EXPECT_THAT(test::ReadFile(Folder() / "b.wav"), HasSubstr("1970-01-0123:59:59"));
}

TEST_F(Program, ReportsFilesWhoseNamesAreNoUtf8) {
    const auto result = Lineup("render $(printf 'a\\377.wav') --duration 0.1 --json");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(json::parse(result.out)["file"], "a\uFFFD.wav");
}

TEST_F(Program, WhatCannotFitIsRefusedBeforeItIsWritten) {
    for (const char* const arguments : {"a.wav --duration 1000:00:00 --ident blits --sample-rate 384000",
                                        "a.mov --duration 1000:00:00 --size 640x360"}) {
        const auto result = Lineup(std::string("render ") + arguments);
        EXPECT_EQ(result.exitCode, 1) << arguments;
        EXPECT_THAT(result.err, AllOf(HasSubstr("cannot write a."), HasSubstr("and there is room for")));
    }
    const auto longName = Lineup("render " + std::string(252, 'x') + ".wav --duration 0.1");
    EXPECT_EQ(longName.exitCode, 1);
    EXPECT_THAT(longName.err, HasSubstr("File name too long: 256 bytes, and 255 are the most"));
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(Program, AnExistingFileIsNeverTouchedWithoutConsent) {
    std::ofstream(Folder() / "out.wav") << "precious";
    const auto refused = Lineup("render out.wav --duration 0.1");
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("out.wav"));
    EXPECT_EQ(test::ReadFile(Folder() / "out.wav"), "precious");
    EXPECT_EQ(Lineup("render out.wav --duration 0.1 -y").exitCode, 0);
    EXPECT_NE(test::ReadFile(Folder() / "out.wav"), "precious");
}

TEST_F(Program, RefusalsNameTheOptionTheValueAndWhatIsRight) {
    ExpectRefusal("render a.mov --frequency 30000", "--frequency 30000: must be 1 Hz or more, and below 24000 Hz");
    ExpectRefusal("render a.mov --frequency loud", "--frequency loud: must be a number of Hz");
    ExpectRefusal("render a.mov --level 3", "--level 3: must be -300 to 0 dBFS");
    ExpectRefusal("render a.mov --size 1921x1080", "--size 1921x1080");
    ExpectRefusal("render a.mov --size 1920", "--size 1920: must be WIDTHxHEIGHT");
    ExpectRefusal("render a.mov --fps 0", "--fps 0");
    ExpectRefusal("render a.mov --duration 0", "--duration 0: must be above 0");
    ExpectRefusal("render a.mov --channels quad", "--channels quad: must be mono, stereo, 5.1");
    ExpectRefusal("render a.mov --card blue", "--card blue: must be auto, hd or sd");
    ExpectRefusal("render a.mov --cycles 1", "--cycles 1");
    ExpectRefusal("render a.mov --ident blits --level -18", "--level -18: has no effect");
    ExpectRefusal("render a.mov --ident blits --channels stereo", "--channels stereo: the BLITS ident");
    ExpectRefusal("render a.mov --video-codec vhs", "--video-codec vhs");
    ExpectRefusal("render a.mov --timecode 25:00:00:00", "--timecode 25:00:00:00");
    ExpectRefusal("render a.mov --frequency 24000",
                  "--frequency 24000: must be 1 Hz or more, and below 24000 Hz: at half");
    ExpectRefusal("render a.wav --size 1x1", "--size 1x1: a .wav file has no picture");
    ExpectRefusal("render a.wav --card hd", "--card hd: a .wav file has no picture");
    ExpectRefusal("render a.wav --fps 7/3", "--fps 7/3: a .wav file has no picture");
    ExpectRefusal("render a.mov --frames 0", "--frames 0: must be 1 to ");
    ExpectRefusal("render a.mov --duration 00:00:30:25", "--duration 00:00:30:25: frames count from 00 to 24");
    ExpectRefusal("render a.mov --until 01:00:00:00", "--until 01:00:00:00: needs --timecode");
    ExpectRefusal("render a.mov --timecode 01:00:00:00 --until 01:00:00:00", "--until 01:00:00:00: must be another");
    ExpectRefusal("render a.mov --fps 29.97 --timecode '01:00:00;00' --until 01:00:10:00",
                  "must be labelled as 01:00:00;00");
    ExpectRefusal("render a.avi", "lineup: output a.avi: ");
    ExpectRefusal("render a.avi", ".mov");
}

TEST_F(Program, FailuresEndWithOneAndSayWhy) {
    const auto noFolder = Lineup("render nowhere/a.wav --duration 0.1");
    EXPECT_EQ(noFolder.exitCode, 1);
    EXPECT_THAT(noFolder.err, AllOf(HasSubstr("nowhere"), HasSubstr("No such file or directory")));

    const auto noPlugin = Lineup("render a.wav --plugin Missing.bundle");
    EXPECT_EQ(noPlugin.exitCode, 1);
    EXPECT_THAT(noPlugin.err, HasSubstr("no bundle at Missing.bundle"));
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(Program, FrameIsAPicture) {
    const auto result = Lineup("frame card.png --size 320x180");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(test::ReadFile(Folder() / "card.png").substr(1, 3), "PNG");
}

}  // namespace
