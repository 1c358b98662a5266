// lineup check as a person or a script runs it: what it prints, writes and ends with.
#include "Tests/Apps/lineup/Files/FolderWatch.h"
#include "Tests/Support/ChildProgram.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <vector>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Check : public test::TestFolder {
protected:
    [[nodiscard]] test::RunResult Shell(const std::string& script) const {
        return test::RunProgram("cd '" + Folder().string() + "' && { " + script + "; }", Folder());
    }
    [[nodiscard]] test::RunResult Lineup(const std::string& arguments) const {
        return Shell("'" TEST_LINEUP "' " + arguments);
    }

    // One cycle of BLITS as it is sent.
    void Send(const std::string& file) const {
        const auto result = Lineup("render '" + file + "' --ident blits --cycles 1 --quiet");
        ASSERT_EQ(result.exitCode, 0) << result.err;
    }

    // A path that does something to it: an audio filter of FFmpeg.
    void Damage(const std::string& from, const std::string& filter, const std::string& to) const {
        const auto result = Shell("ffmpeg -v error -nostdin -i " + from + " -af '" + filter + "' -c:a pcm_s24le " + to);
        ASSERT_EQ(result.exitCode, 0) << result.err;
    }

    // Noise that is no line-up.
    void MakeNoise(const std::string& file) const {
        const auto result =
            Shell("ffmpeg -v error -nostdin -f lavfi -i anoisesrc=d=3:r=48000:a=0.1:seed=1 -c:a pcm_s16le " + file);
        ASSERT_EQ(result.exitCode, 0) << result.err;
    }

    [[nodiscard]] std::vector<json> Lines(const std::string& text) const {
        std::vector<json> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(json::parse(line));
        }
        return lines;
    }
};

std::vector<std::string> FaultIds(const json& report) {
    std::vector<std::string> ids;
    for (const json& fault : report["faults"]) {
        ids.push_back(fault["id"]);
    }
    return ids;
}

constexpr const char* kCentreUpsideDown = "pan=5.1(side)|c0=c0|c1=c1|c2=-1*c2|c3=c3|c4=c4|c5=c5";

TEST_F(Check, EndsWithZeroWhereNothingIsWrong) {
    Send("sent.wav");
    const auto result = Lineup("check sent.wav --expect blits");
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_THAT(result.out, AllOf(HasSubstr("BLITS ident"), HasSubstr("\nnothing wrong\n")));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Check, EndsWithOneWhereThereAreFaults) {
    Send("sent.wav");
    Damage("sent.wav", kCentreUpsideDown, "got.wav");
    const auto result = Lineup("check got.wav");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, AllOf(HasSubstr("1 fault\n"), HasSubstr("C (input 3)")));
    const json report = json::parse(Lineup("check got.wav --json").out);
    EXPECT_EQ(report["verdict"], "faults");
    ASSERT_THAT(FaultIds(report), testing::ElementsAre("polarity-inverted"));
    EXPECT_EQ(report["faults"][0]["inputs"], json({2}));
    EXPECT_EQ(report["faults"][0]["channels"], json({"C"}));
}

TEST_F(Check, EndsWithTwoWhereItIsUsedWrongly) {
    Send("sent.wav");
    for (const char* const arguments :
         {"check", "check sent.wav --expect blitz", "check sent.wav --tolerance level",
          "check sent.wav --tolerance x=1", "check sent.wav --tolerance level=much", "check sent.wav --from never",
          "check sent.wav --for 0", "check sent.wav --report page.txt", "check sent.wav --card 4k",
          "check sent.wav --channels 7.1", "check sent.wav --frequency high",
          "check sent.wav --expect blits --frequency 1000"}) {
        const auto result = Lineup(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_THAT(result.err, Not(IsEmpty())) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
    }
}

TEST_F(Check, EndsWithThreeWhereItCannotTell) {
    MakeNoise("noise.wav");
    test::WriteFile(Folder() / "text.wav", "no recording");
    test::WriteFile(Folder() / "empty.wav", "");
    for (const char* const recording : {"noise.wav", "text.wav", "empty.wav", "missing.wav", ".", "unix:///nowhere"}) {
        const auto result = Lineup(std::string("check ") + recording + " --json");
        EXPECT_EQ(result.exitCode, 3) << recording;
        const json report = json::parse(result.out);
        EXPECT_EQ(report["verdict"], "cannot-tell") << recording;
        EXPECT_EQ(report["source"], recording);
        EXPECT_FALSE(report["notes"].empty()) << recording;
    }
}

TEST_F(Check, SaysWhyARecordingCannotBeRead) {
    const auto note = [this](const char* recording) {
        return json::parse(Lineup(std::string("check ") + recording + " --json").out)["notes"][0];
    };
    EXPECT_EQ(note("missing.wav")["id"], "unreadable");
    EXPECT_EQ(note("missing.wav")["text"], "The recording cannot be read: there is no such file.");
    EXPECT_EQ(note(".")["text"], "The recording cannot be read: it is a folder.");
    ASSERT_EQ(Shell("ffmpeg -v error -nostdin -f lavfi -i testsrc=d=1:s=64x64 -c:v mpeg4 silent.mov").exitCode, 0);
    EXPECT_EQ(note("silent.mov")["id"], "no-sound");
}

// A decoder leaves out what it cannot read, and silence stands for it, or, as FFmpeg 7 has it near the end, says so.
TEST_F(Check, NamesDamageOnceWhetherItIsReadOrHeard) {
    ASSERT_EQ(Lineup("render take.wav --ident ebu-stereo-1000 --cycles 2 --quiet").exitCode, 0);
    ASSERT_EQ(Shell("ffmpeg -v error -nostdin -i take.wav take.flac").exitCode, 0);
    const std::string whole = test::ReadFile(Folder() / "take.flac");
    for (const auto& [where, at, text] :
         {std::tuple(0.05, 0.096, "the recording is damaged"), std::tuple(0.5, 2.88, "at input 2"),
          std::tuple(0.7, 4.128, "are silent"), std::tuple(0.95, 5.664, "are silent|cannot be read")}) {
        std::string damaged = whole;
        for (std::size_t i = 0; i < 2000; ++i) {
            damaged[static_cast<std::size_t>(static_cast<double>(whole.size()) * where) + i] =
                static_cast<char>(i * 31);
        }
        test::WriteFile(Folder() / "take.flac", damaged);
        const json faults = json::parse(Lineup("check take.flac --json").out)["faults"];
        ASSERT_EQ(faults.size(), 1U) << faults;
        EXPECT_EQ(faults[0]["id"], "dropout");
        EXPECT_NEAR(faults[0]["at"].get<double>(), at, 0.1);
        EXPECT_THAT(faults[0]["text"].get<std::string>(), testing::ContainsRegex(text));
    }
}

TEST_F(Check, AStillPictureIsNotMissingItsSound) {
    ASSERT_EQ(Lineup("frame card.png --size 320x180").exitCode, 0);
    const json report = json::parse(Lineup("check card.png --json").out);
    EXPECT_EQ(report["verdict"], "right");
    for (const json& note : report["notes"]) {
        EXPECT_NE(note["id"], "no-sound");
    }
}

TEST_F(Check, LooksAtThePartAloneThatItIsAskedFor) {
    const auto made = Lineup("render clip.mov --size 640x360 --ident blits --cycles 1 --quiet");
    ASSERT_EQ(made.exitCode, 0) << made.err;
    const auto parts = [this](const char* asked) {
        const json report = json::parse(Lineup(std::string("check clip.mov --json ") + asked).out);
        EXPECT_EQ(report["verdict"], "right") << asked << ": " << report["faults"];
        return std::pair(!report["sound"].is_null(), !report["picture"].is_null());
    };
    EXPECT_EQ(parts(""), std::pair(true, true));
    EXPECT_EQ(parts("--expect none"), std::pair(false, true));
    EXPECT_EQ(parts("--card none"), std::pair(true, false));
    EXPECT_EQ(Lineup("check clip.mov --expect none --card none").exitCode, 2);
    const auto watched = Lineup("check clip.mov --expect none --watch");
    EXPECT_EQ(watched.exitCode, 0) << watched.out << watched.err;
    EXPECT_EQ(watched.out.find("BLITS"), std::string::npos) << watched.out;
    EXPECT_NE(watched.out.find("SD card"), std::string::npos) << watched.out;
}

// A card that is right stands for sound in which there is no line-up; not for one that is there in part.
TEST_F(Check, ACardIsNotRightForAllOfARecordingBesideAPartOfASequence) {
    const auto exit = [this](const char* sound) {
        const std::string render = "render clip.mov --overwrite --size 320x180 --fps 5 --quiet " + std::string(sound);
        EXPECT_EQ(Lineup(render).exitCode, 0);
        return Lineup("check clip.mov").exitCode;
    };
    EXPECT_EQ(exit("--ident blits --cycles 1"), 0);
    EXPECT_EQ(exit("--ident blits --duration 6"), 3);
    EXPECT_EQ(exit("--duration 1"), 0);  // too little of a tone to be one
}

TEST_F(Check, OfAPictureTakesWhateverAStillIsKeptIn) {
    ASSERT_EQ(Lineup("render card.png --size 640x360 --quiet").exitCode, 0);
    ASSERT_EQ(Shell("for still in still.tif card.bmp card.tga card.dpx; do ffmpeg -v error -nostdin -i card.png $still "
                    "|| exit; "
                    "done; ffmpeg -v error -nostdin -i card.png -vf "
                    "'split[a][b];[a]palettegen[p];[b][p]paletteuse=dither=none' indexed.png")
                  .exitCode,
              0);
    const auto result = Lineup("check card.png still.tif card.bmp card.tga card.dpx indexed.png --json");
    EXPECT_EQ(result.exitCode, 0) << result.out;
    const std::vector<json> stills = Lines(result.out);
    EXPECT_EQ(stills.size(), 6U);
    for (const json& still : stills) {
        EXPECT_EQ(still["picture"]["card"], "sd") << still["source"];
    }
}

// By the matrix of a container, which versions of ffmpeg write by one option or another, and by a message of H.264.
TEST_F(Check, SaysWhereAFileHasItsPicturesTurned) {
    ASSERT_EQ(Lineup("render clip.mkv --size 640x360 --frames 2 --video-codec ffv1 --quiet").exitCode, 0);
    const auto made = Shell(
        "ffmpeg -v error -nostdin -i clip.mkv -an -c:v libx264 -preset ultrafast clip.mp4 && "
        "{ ffmpeg -v quiet -nostdin -display_rotation 90 -i clip.mp4 -c copy turned.mp4 || "
        "ffmpeg -v error -nostdin -i clip.mp4 -c copy -metadata:s:v rotate=90 turned.mp4; } && "
        "ffmpeg -v error -nostdin -i clip.mp4 -c copy "
        "-bsf:v h264_metadata=display_orientation=insert:flip=horizontal mirrored.mkv");
    ASSERT_EQ(made.exitCode, 0) << made.err;
    const std::vector<json> reports = Lines(Lineup("check clip.mp4 turned.mp4 mirrored.mkv --expect none --json").out);
    ASSERT_EQ(reports.size(), 3U);
    const auto said = [&reports](std::size_t file) {
        for (const json& note : reports[file]["notes"]) {
            if (note["id"] == "turned-where-shown") {
                return note["text"].get<std::string>();
            }
        }
        return std::string();
    };
    EXPECT_EQ(said(0), "");
    EXPECT_THAT(said(1), HasSubstr("to turn its pictures by 270 degrees clockwise where"));
    EXPECT_THAT(said(2), HasSubstr("to mirror its pictures where"));
    for (const json& report : reports) {
        EXPECT_EQ(report["verdict"], "right") << report["source"];
    }
}

TEST_F(Check, HoldsTheStartOfThePicturesAgainstThatOfTheSound) {
    ASSERT_EQ(Lineup("render clip.mov --size 320x180 --fps 5 --duration 6 --quiet").exitCode, 0);
    ASSERT_EQ(Shell("ffmpeg -v error -nostdin -i clip.mov -itsoffset 1 -i clip.mov -map 0:a -map 1:v -c copy late.mkv")
                  .exitCode,
              0);
    EXPECT_EQ(Lineup("check clip.mov").exitCode, 0);
    const json report = json::parse(Lineup("check late.mkv --json").out);
    ASSERT_THAT(FaultIds(report), testing::ElementsAre("lengths-differ"));
    EXPECT_NEAR(report["faults"][0]["measured"], 1, 0.01);
}

TEST_F(Check, SaysWhereARecordingIsDamaged) {
    Send("sent.wav");
    ASSERT_EQ(Shell("ffmpeg -v error -nostdin -i sent.wav -c:a flac got.flac").exitCode, 0);
    std::string bytes = test::ReadFile(Folder() / "got.flac");
    for (std::size_t i = 0; i < 2000; ++i) {
        bytes[bytes.size() / 2 + i] = static_cast<char>(i * 31);
    }
    test::WriteFile(Folder() / "got.flac", bytes);
    const auto result = Lineup("check got.flac --json");
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    ASSERT_THAT(FaultIds(report), testing::Contains("dropout"));
    const auto dropout = std::ranges::find(report["faults"], "dropout", [](const json& fault) { return fault["id"]; });
    EXPECT_GT((*dropout)["at"], 0);
    EXPECT_LT((*dropout)["at"], 13.4);
}

TEST_F(Check, SaysInANoteWhereARecordingWasCutOff) {
    Send("sent.wav");
    ASSERT_EQ(Shell("ffmpeg -v error -nostdin -stream_loop 1 -i sent.wav -c:a flac got.flac").exitCode, 0);
    fs::resize_file(Folder() / "got.flac", fs::file_size(Folder() / "got.flac") * 3 / 4);
    const auto result = Lineup("check got.flac --json");
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(json::parse(result.out)["notes"][0]["id"], "ended-early");
}

TEST_F(Check, PrintsALineOfJsonForEachRecordingInTheirOrder) {
    Send("sent.wav");
    Damage("sent.wav", kCentreUpsideDown, "got.wav");
    const auto result = Lineup("check got.wav missing.wav sent.wav got.wav --json");
    EXPECT_EQ(result.exitCode, 1);
    const std::vector<json> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0]["source"], "got.wav");
    EXPECT_EQ(lines[1]["source"], "missing.wav");
    EXPECT_EQ(lines[2]["source"], "sent.wav");
    EXPECT_EQ(lines[2]["verdict"], "right");
    EXPECT_EQ(lines[3], lines[0]);
}

TEST_F(Check, EndsWithTheWorstOfSeveral) {
    Send("sent.wav");
    Damage("sent.wav", kCentreUpsideDown, "got.wav");
    EXPECT_EQ(Lineup("check sent.wav sent.wav -q").exitCode, 0);
    EXPECT_EQ(Lineup("check missing.wav sent.wav -q").exitCode, 3);
    EXPECT_EQ(Lineup("check missing.wav got.wav sent.wav -q").exitCode, 1);
}

TEST_F(Check, SaysNothingQuietlyUnlessSomethingIsWrong) {
    Send("sent.wav");
    EXPECT_THAT(Lineup("check sent.wav --quiet").out, IsEmpty());
    EXPECT_EQ(Lineup("check missing.wav --quiet").out,
              "missing.wav: cannot tell: The recording cannot be read: there is no such file.\n");
}

TEST_F(Check, ReadsFromPipesAndStandardInput) {
    Send("sent.wav");
    EXPECT_EQ(Shell("cat sent.wav | '" TEST_LINEUP "' check -").exitCode, 0);
    EXPECT_EQ(Shell("ffmpeg -v error -nostdin -i sent.wav -f nut -c:a pcm_s24le - | '" TEST_LINEUP "' check - --json")
                  .exitCode,
              0);
    EXPECT_EQ(json::parse(Shell("'" TEST_LINEUP "' check - --json < sent.wav").out)["source"], "-");
    EXPECT_EQ(Lineup("check - --json < /dev/null").exitCode, 3);
}

TEST_F(Check, LooksAtTheStretchThatItIsToldTo) {
    Send("sent.wav");
    Damage("sent.wav", "adelay=5000:all=1", "late.wav");
    const json report = json::parse(Lineup("check late.wav --from 2 --for 1:00 --json").out);
    EXPECT_NEAR(report["sound"]["startsAt"].get<double>(), 5, 0.001);
    EXPECT_EQ(Lineup("check late.wav --for 4 --quiet").exitCode, 3);
}

TEST_F(Check, LetsMoreBeOffWhereItIsToldTo) {
    Send("sent.wav");
    Damage("sent.wav", "volume=-0.5dB", "soft.wav");
    EXPECT_EQ(Lineup("check soft.wav -q").exitCode, 1);
    EXPECT_EQ(Lineup("check soft.wav -q --tolerance level=1").exitCode, 0);
}

TEST_F(Check, WritesAReportOfEachKind) {
    Send("sent.wav");
    const auto result = Lineup("check sent.wav missing.wav -q --report page.html");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(test::ReadFile(Folder() / "page.html"),
                AllOf(HasSubstr("<h2>sent.wav</h2>"), HasSubstr("<svg"), HasSubstr("there is no such file")));
    EXPECT_EQ(Lineup("check sent.wav -q --report drawing.SVG").exitCode, 0);
    EXPECT_THAT(test::ReadFile(Folder() / "drawing.SVG"), HasSubstr("class=\"expected\""));
    EXPECT_EQ(Lineup("check sent.wav -q --report check.xml").exitCode, 0);
    EXPECT_THAT(test::ReadFile(Folder() / "check.xml"), HasSubstr("failures=\"0\" errors=\"0\""));
}

TEST_F(Check, ReplacesAReportAsAWholeOrNotAtAll) {
    Send("sent.wav");
    test::WriteFile(Folder() / "page.html", "before");
    EXPECT_EQ(Lineup("check sent.wav -q --report nowhere/page.html").exitCode, 1);
    EXPECT_EQ(Shell("ulimit -f 1; '" TEST_LINEUP "' check sent.wav -q --report page.html").exitCode, 1);
    EXPECT_EQ(test::ReadFile(Folder() / "page.html"), "before");
    EXPECT_EQ(Lineup("check sent.wav -q --report page.html").exitCode, 0);
    EXPECT_THAT(test::ReadFile(Folder() / "page.html"), HasSubstr("<html"));
}

TEST_F(Check, IsColouredOnATerminalAlone) {
    Send("sent.wav");
    EXPECT_THAT(Lineup("check sent.wav").out, Not(HasSubstr("\033[")));
    const std::string onTerminal = "script -qec \"'" TEST_LINEUP "' check sent.wav\" /dev/null";
    EXPECT_THAT(Shell(onTerminal).out, HasSubstr("\033[32mnothing wrong\033[0m"));
    EXPECT_THAT(Shell("NO_COLOR=1 " + onTerminal).out, Not(HasSubstr("\033[32m")));
}

TEST_F(Check, ShowsOnATerminalHowFarItIs) {
    Send("sent.wav");
    EXPECT_THAT(Lineup("check sent.wav").err, IsEmpty());
    const std::string onTerminal = "script -qec \"'" TEST_LINEUP "' check sent.wav";
    EXPECT_THAT(Shell(onTerminal + "\" /dev/null").out, HasSubstr("\rsent.wav ["));
    EXPECT_THAT(Shell(onTerminal + " --quiet\" /dev/null").out, IsEmpty());
}

TEST_F(Check, EndsByTheSignalThatStopsIt) {
    // A pipe that somebody opens as soon as it is read, and writes nothing into.
    ASSERT_EQ(mkfifo((Folder() / "endless").c_str(), 0600), 0);
    const test::FolderWatch watch(Folder());
    const test::ChildProgram writer({"/bin/sh", "-c", "exec 3> endless; : > opened; exec sleep 600"}, Folder());
    test::ChildProgram program({TEST_LINEUP, "check", "endless", "--json"}, Folder());
    watch.WaitForAWriteWhileRuns(program);
    program.Send(SIGINT);
    const test::Ending ending = program.Wait();
    EXPECT_EQ(ending.signal, SIGINT);
    EXPECT_THAT(ending.out, IsEmpty());
}

TEST_F(Check, TeachesItsUse) {
    const auto result = Lineup("check --help");
    EXPECT_EQ(result.exitCode, 0);
    for (const char* const text : {"RECORDING", "--expect", "--tolerance", "level=0.1 dB", "--report", "Exit status",
                                   "lineup check from-truck.mxf --expect blits"}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST_F(Check, WatchesAStreamThatAnotherProgramSends) {
    const auto result = Shell("'" TEST_LINEUP
                              "' send - --ident ebu-stereo-400 --audio-codec s302m --size 320x180 "
                              "--clock free --for 15 --quiet | '" TEST_LINEUP "' check - --watch --json");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::vector<json> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 6U) << result.out;
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(lines[i]["event"], "cycle");
        EXPECT_EQ(lines[i]["verdict"], "right");
        EXPECT_EQ(lines[i]["number"], i + 1);
        EXPECT_EQ(lines[i]["card"], "sd");
        EXPECT_NEAR(lines[i]["alignment"]["offsetMs"].get<double>(), 0, 0.01);
    }
    EXPECT_EQ(lines[5]["event"], "summary");
    EXPECT_EQ(lines[5]["expected"], "ebu-stereo-400");
    EXPECT_EQ(lines[5]["schema"], "lineup-watch/1");
}

TEST_F(Check, WatchesOneFeedThatCanBeRead) {
    MakeNoise("noise.wav");
    const auto nothing = Lineup("check noise.wav --watch");
    EXPECT_EQ(nothing.exitCode, 3);
    EXPECT_THAT(nothing.out, AllOf(HasSubstr("cannot tell"), HasSubstr("No identification sequence")));
    const auto gone = Lineup("check gone.wav --watch");
    EXPECT_EQ(gone.exitCode, 3);
    EXPECT_THAT(gone.out, HasSubstr("there is no such file"));
    EXPECT_EQ(Lineup("check noise.wav noise.wav --watch").exitCode, 2);
    EXPECT_EQ(Lineup("check noise.wav --watch --report a.html").exitCode, 2);
}

}  // namespace
