// What is no recording, or no longer a whole one.
#include "Tests/Host/Lineup/Check/Reader/MadeRecordings.h"
#include "Tests/Support/RunProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class OddRecordings : public test::MadeRecordings {
protected:
    std::string Write(const std::string& name, const std::string& bytes) {
        test::WriteFile(Folder() / name, bytes);
        return (Folder() / name).string();
    }

    // All that read_recording prints.
    std::string Read(const std::string& recording) {
        const auto result = test::RunProgram(TEST_READ_RECORDING " '" + recording + "' 200", Folder());
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return result.out;
    }
};

constexpr const char* kSine = "-f lavfi -i sine=1000:d=2:r=48000 ";

TEST_F(OddRecordings, AreNamedByWhatIsOddAboutThem) {
    EXPECT_THAT(Read((Folder() / "missing.wav").string()), HasSubstr("there is no such file"));
    EXPECT_THAT(Read(Folder().string()), HasSubstr("it is a folder"));
    EXPECT_THAT(Read(Write("empty.wav", "")), HasSubstr("it is empty"));
    EXPECT_THAT(Read(Write("text.wav", "These are words, and no recording at all.\n")),
                HasSubstr("unreadable it is of no kind that the FFmpeg libraries know"));
    EXPECT_THAT(Read(Write("head.wav", "RIFF")), HasSubstr("unreadable it is of no kind"));
}

TEST_F(OddRecordings, WithoutSoundSaySo) {
    EXPECT_THAT(Read(Make("-f lavfi -i testsrc=d=1:s=64x64 -c:v mpeg4", "silent.mov")),
                HasSubstr("unreadable it has no sound"));
}

TEST_F(OddRecordings, AreReadAsFarAsTheyGo) {
    for (const char* const name : {"cut.wav", "cut.flac", "cut.mp3", "cut.ts", "cut.mkv"}) {
        const std::string file = Make(kSine, name);
        std::filesystem::resize_file(file, std::filesystem::file_size(file) * 2 / 3);
        const std::string said = Read(file);
        EXPECT_THAT(said, AllOf(HasSubstr("rate 48000"), Not(HasSubstr("samples 0\n")), Not(HasSubstr("damage"))))
            << name;
    }
}

TEST_F(OddRecordings, WithoutTheirEndSayWhatIsMissing) {
    const std::string file = Make(kSine, "cut.mov");
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    EXPECT_THAT(Read(file), AllOf(StartsWith("unreadable it is of no kind"), HasSubstr("moov atom not found")));
}

TEST_F(OddRecordings, SayWhereTheyAreDamaged) {
    const std::string file = Make(std::string(kSine) + "-c:a flac", "damaged.flac");
    std::string bytes = test::ReadFile(file);
    for (std::size_t i = 0; i < 2000; ++i) {
        bytes[bytes.size() / 2 + i] = static_cast<char>(i * 31);
    }
    const std::string said = Read(Write("damaged.flac", bytes));
    EXPECT_THAT(said, AllOf(HasSubstr("samples 96000\n"), HasSubstr("\ndamage "), HasSubstr("ended whole")));
}

TEST_F(OddRecordings, SayWherePacketsAreMissing) {
    const std::string file = Make(std::string(kSine) + "-c:a mp2", "lost.ts");
    const std::string bytes = test::ReadFile(file);
    constexpr std::size_t kPacket = 188;
    const std::size_t middle = bytes.size() / kPacket / 2 * kPacket;
    const std::string said = Read(Write("lost.ts", bytes.substr(0, middle) + bytes.substr(middle + 20 * kPacket)));
    EXPECT_THAT(said, AllOf(HasSubstr("\ndamage "), HasSubstr("ended whole")));
}

TEST_F(OddRecordings, OpenNoOtherFiles) {
    Make(kSine, "part.ts");
    const std::string list =
        Write("list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\npart.ts\n#EXT-X-ENDLIST\n");
    EXPECT_THAT(Read(list), StartsWith("unreadable it refers to other files, which are not opened"));
    const std::string concat = Write("list.ffconcat", "ffconcat version 1.0\nfile part.ts\n");
    EXPECT_THAT(Read(concat), AllOf(StartsWith("unreadable "), HasSubstr("Impossible to open 'part.ts'")));
}

TEST_F(OddRecordings, FromNowhereSayWhy) {
    EXPECT_THAT(Read("unix:///nowhere/at/all"), StartsWith("unreadable "));
    EXPECT_THAT(Read("nonsense://x"), HasSubstr("Protocol not found"));
    EXPECT_THAT(Read("concat://part.ts"), StartsWith("unreadable "));
}

TEST_F(OddRecordings, ThatChangeTheirChannelsOnTheWayEndThere) {
    const std::string one = Make(std::string(kSine) + "-c:a mp2 -ac 1 -f mp2", "one.mp2");
    const std::string two = Make(std::string(kSine) + "-c:a mp2 -ac 2 -f mp2", "two.mp2");
    EXPECT_THAT(Read(Write("both.mp2", test::ReadFile(one) + test::ReadFile(two))),
                HasSubstr("track 1 turns from 1 channels at 48000 Hz into 2 at 48000 Hz"));
}

}  // namespace
