// Recordings that other programs made: what is read of them.
#include "Tests/Host/Lineup/Check/Reader/MadeRecordings.h"
#include "Tests/Support/RunProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

// The facts that read_recording prints, by their first word.
using Facts = std::map<std::string, std::string>;

class Recordings : public test::MadeRecordings {
protected:
    Facts Read(const std::string& recording) { return Run(TEST_READ_RECORDING " '" + recording + "'"); }

    Facts Shell(const std::string& script) { return Run("sh -c '" + script + "'"); }

    Facts Run(const std::string& commandLine) {
        const auto result = test::RunProgram(commandLine, Folder());
        EXPECT_EQ(result.exitCode, 0) << result.err;
        Facts facts;
        std::istringstream lines(result.out);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("note decoder-not-confined")) {
                continue;  // a word on this system, or on a sanitizer, and not on the recording
            }
            facts[line.substr(0, line.find(' '))] += line.substr(std::min(line.size(), line.find(' ') + 1));
        }
        return facts;
    }
};

// A sine of full scale / 8, FFmpeg's own, in each channel of `layout`, softer by 10 % from channel to channel.
std::string Sines(int channels, int rate, const std::string& seconds) {
    std::string levels;
    for (int c = 0; c < channels; ++c) {
        levels += (c == 0 ? "" : "|") + ("0.125*sin(2*PI*1000*t)*" + std::to_string(1 - 0.01 * c));
    }
    return "-f lavfi -i \"aevalsrc=exprs='" + levels + "':s=" + std::to_string(rate) + ":d=" + seconds + "\" ";
}

TEST_F(Recordings, OfWholeNumbersSayTheirBits) {
    struct Row {
        const char* codec;
        const char* bits;
    };
    for (const Row& row : {Row{"pcm_u8", "8"}, Row{"pcm_s16le", "16"}, Row{"pcm_s24le", "24"}, Row{"pcm_s32le", "32"},
                           Row{"pcm_f32le", "0"}, Row{"pcm_f64le", "0"}}) {
        Facts facts = Read(Make(Sines(2, 48000, "0.5") + "-c:a " + row.codec, "take.wav"));
        EXPECT_EQ(facts["bits"], row.bits) << row.codec;
        EXPECT_EQ(facts["lossy"], "0") << row.codec;
        EXPECT_EQ(facts["samples"], "24000") << row.codec;
        EXPECT_EQ(facts["ended"], "whole") << row.codec;
        EXPECT_NEAR(std::stod(facts["peaks"]), 0.125, row.bits == std::string("8") ? 0.005 : 0.0001) << row.codec;
    }
}

TEST_F(Recordings, InLosslessCodecsSayTheirBits) {
    for (const char* const arguments :
         {"-sample_fmt s32 -bits_per_raw_sample 24 -c:a flac", "-c:a alac -sample_fmt s32p"}) {
        Facts facts = Read(Make(Sines(2, 48000, "0.5") + arguments, "take.mkv"));
        EXPECT_EQ(facts["bits"], "24") << arguments;
        EXPECT_EQ(facts["lossy"], "0") << arguments;
        EXPECT_EQ(facts["samples"], "24000") << arguments;
    }
}

TEST_F(Recordings, InLossyCodecsSayThatTheyAre) {
    for (const char* const file :
         {"take.m4a", "take.mp3", "take.ac3", "take.opus", "take.ogg", "take.ts", "take.mp2"}) {
        Facts facts = Read(Make(Sines(2, 48000, "1"), file));
        EXPECT_EQ(facts["lossy"], "1") << file;
        EXPECT_EQ(facts["bits"], "0") << file;
        EXPECT_EQ(facts["rate"], "48000") << file;
        EXPECT_GE(std::stoi(facts["samples"]), 48000) << file;
        EXPECT_LE(std::stoi(facts["samples"]), 48000 + 6 * 1536) << file;
        EXPECT_EQ(facts["damage"], "") << file;
        EXPECT_EQ(facts["ended"], "whole") << file;
    }
}

TEST_F(Recordings, MayHaveAnyRate) {
    for (const int rate : {8000, 11025, 44056, 44100, 96000, 192000, 384000}) {
        Facts facts = Read(Make(Sines(1, rate, "0.25"), "take.wav"));
        EXPECT_EQ(facts["rate"], std::to_string(rate));
        EXPECT_EQ(facts["samples"], std::to_string(rate / 4));
    }
}

TEST_F(Recordings, MayHaveSixtyFourChannels) {
    Facts facts = Read(Make(Sines(64, 48000, "0.25") + "-c:a pcm_s24le", "take.wav"));
    EXPECT_EQ(facts["inputs"], "64");
    EXPECT_THAT(facts["peaks"], StartsWith("0.125000 0.123750 "));
    EXPECT_THAT(facts["peaks"], testing::EndsWith("0.046250"));  // the 64th is softer by 63 %
    EXPECT_EQ(facts["note"], "");
}

TEST_F(Recordings, OfMoreChannelsAreReadUpToTheSixtyFourth) {
    const std::string file =
        Make(Sines(40, 48000, "0.25") + Sines(40, 48000, "0.25") + "-map 0 -map 1 -c:a pcm_s16le", "take.mka");
    Facts facts = Read(file);
    EXPECT_EQ(facts["inputs"], "40");
    EXPECT_THAT(facts["note"], HasSubstr("40 channels more than the 64"));
}

TEST_F(Recordings, OfSixMonoTracksHaveSixInputsInTheirOrder) {
    std::string arguments = "-f lavfi -i testsrc=d=0.5:s=64x64:r=50 ";
    std::string maps = "-map 0";
    for (int c = 0; c < 6; ++c) {
        arguments +=
            "-f lavfi -i \"aevalsrc=exprs='sin(2*PI*1000*t)*" + std::to_string(0.1 + 0.1 * c) + "':s=48000:d=0.5\" ";
        maps += " -map " + std::to_string(c + 1);
    }
    for (const char* const file : {"take.mov", "take.mxf", "take.mkv"}) {
        Facts facts = Read(Make(arguments + maps + " -c:v mpeg2video -c:a pcm_s24le", file));
        EXPECT_EQ(facts["inputs"], "6") << file;
        EXPECT_EQ(facts["samples"], "24000") << file;
        EXPECT_EQ(facts["peaks"], "0.100000 0.200000 0.300000 0.400000 0.500000 0.600000") << file;
    }
}

TEST_F(Recordings, KeepTheTimeBetweenTracksThatBeginApart) {
    const std::string file = Make(
        Sines(1, 48000, "1") + "-itsoffset 0.25 " + Sines(1, 48000, "1") + "-map 0 -map 1 -c:a pcm_s16le", "take.mkv");
    EXPECT_EQ(Read(file)["samples"], "60000");
}

TEST_F(Recordings, BringTracksToTheRateOfTheFirst) {
    const std::string file =
        Make(Sines(1, 48000, "1") + Sines(1, 44100, "1") + "-map 0 -map 1 -c:a pcm_s24le", "take.mov");
    Facts facts = Read(file);
    EXPECT_EQ(facts["rate"], "48000");
    EXPECT_EQ(facts["inputs"], "2");
    EXPECT_NEAR(std::stod(facts["samples"]), 48000, 1);
    EXPECT_THAT(facts["note"], HasSubstr("Track 2 was converted from 44100 Hz to 48000 Hz"));
    std::istringstream peaks(facts["peaks"]);
    double first = 0;
    double second = 0;
    peaks >> first >> second;
    EXPECT_NEAR(second, first, 0.0005);
}

TEST_F(Recordings, PassOverPicturesAndSubtitles) {
    const std::string file =
        Make("-f lavfi -i testsrc=d=1:s=64x64 " + Sines(2, 48000, "1") + "-c:v mpeg4 -c:a pcm_s16le", "take.mov");
    Facts facts = Read(file);
    EXPECT_EQ(facts["inputs"], "2");
    EXPECT_EQ(facts["samples"], "48000");
}

TEST_F(Recordings, ComeThroughPipesToo) {
    const std::string file = Make(Sines(2, 48000, "1") + "-c:a pcm_s24le", "take.wav");
    const std::string fifo = (Folder() / "fifo").string();
    Facts whole = Read(file);
    Facts piped = Shell("cat " + file + " | " TEST_READ_RECORDING " -");
    EXPECT_EQ(piped["samples"], "48000");
    EXPECT_EQ(piped["peaks"], whole["peaks"]);
    EXPECT_EQ(Shell(TEST_READ_RECORDING " - < " + file)["samples"], "48000");
    EXPECT_EQ(
        Shell("mkfifo " + fifo + "; cat " + file + " > " + fifo + " & " TEST_READ_RECORDING " " + fifo)["samples"],
        "48000");
}

TEST_F(Recordings, MayBeRawWhereTheirNamesSaySo) {
    EXPECT_EQ(Read(Make(Sines(2, 48000, "1") + "-f mp2", "take.MP2"))["inputs"], "2");
}

}  // namespace
