#include "Tests/Apps/lineup/Files/WritingProgram.h"
#include "Tests/Support/Deprivation.h"

#include <iterator>

namespace {

constexpr unsigned long kDiskBytes = 65536;
constexpr unsigned long kFewerThanSettings = 16;  // the smallest file that any of the writers writes has 32

class FullDisk : public test::WritingProgram {};

// A shell script that fills the disk at $1 but for the file $2, runs the command that follows there, and says
// what is there afterwards.
constexpr const char* kScript = R"(
cd "$1" && printf precious > "$2" || exit 126
cat /dev/zero > filler 2> /dev/null
target=$2
shift 2
"$@"
code=$?
rm filler
ls -A
cat "$target"
exit $code
)";

TEST_P(FullDisk, ASmallDiskThatIsFullIsSaidAndLosesNothing) {
    if (!test::CanMountDisks(Folder())) {
        GTEST_SKIP() << "this process may not mount a disk; the limit on a file's size stands for a full disk";
    }
    std::vector<std::string> command = {"/bin/sh", "-c", kScript, "sh", Folder().string(), GetParam().target};
    const auto program = GetParam().Command();
    command.insert(command.end(), program.begin(), program.end());
    const auto ending = test::RunChild(command, "/", [this] { return test::MountSmallDisk(Folder(), kDiskBytes); });
    RecordProperty("full_disk", "tmpfs");
    ExpectSentence(ending, "No space left on device");
    EXPECT_EQ(ending.out, std::string(GetParam().target) + "\n" + test::kPrecious);
}

TEST_P(FullDisk, AFileThatMayNotGrowIsSaidAndLosesNothing) {
    const auto ending = Run([] { return test::LimitFileSize(kFewerThanSettings); });
    RecordProperty("full_disk", "RLIMIT_FSIZE");
    ExpectSentence(ending, std::string("cannot write ") + GetParam().target + ": File too large");
    ExpectTheEarlierFileAlone();
}

INSTANTIATE_TEST_SUITE_P(Program, FullDisk, testing::ValuesIn(test::Writers()), test::NameOf);

// A file that a stream goes into has its name from the start: others read it as it grows.
class FullDiskOfAStream : public testing::Test {
protected:
    [[nodiscard]] static std::vector<std::string> Sending(const char* target, bool hasLength) {
        std::vector<std::string> command = {TEST_LINEUP, "send", target, "--size", "320x240",
                                            "--clock",   "free", "-y",   "--quiet"};
        if (hasLength) {
            command.insert(command.end(), {"--for", "600"});
        }
        return command;
    }

    test::TemporaryFolder mFolder;
};

TEST_F(FullDiskOfAStream, OneThatWasToEndLeavesNothing) {
    if (!test::CanMountDisks(mFolder.Path())) {
        GTEST_SKIP() << "this process may not mount a disk";
    }
    for (const char* const target : {"out.ts", "out.flv"}) {
        std::vector<std::string> command = {"/bin/sh", "-c", "cd \"$1\"; shift; \"$@\"; code=$?; ls -A; exit $code",
                                            "sh", mFolder.Path()};
        std::ranges::copy(Sending(target, true), std::back_inserter(command));
        const auto ending =
            test::RunChild(command, "/", [this] { return test::MountSmallDisk(mFolder.Path(), kDiskBytes); });
        EXPECT_EQ(ending.exitCode, 1);
        EXPECT_EQ(ending.err, std::string("lineup: cannot write ") + target + ": No space left on device\n");
        EXPECT_EQ(ending.out, "");
    }
}

// After hours of it there is a stream that was whole up to then, and the words say so.
TEST_F(FullDiskOfAStream, OneWithoutAnEndIsKeptUpToItsLastWholePacket) {
    constexpr unsigned long kNoWholePackets = 100'001;
    const auto send = [this](const char* target) {
        const auto ending =
            test::RunChild(Sending(target, false), mFolder.Path(), [] { return test::LimitFileSize(kNoWholePackets); });
        const std::string kept = test::ReadFile(mFolder.Path() / target);
        EXPECT_EQ(ending.exitCode, 1);
        EXPECT_EQ(ending.err, std::string("lineup: cannot write ") + target +
                                  ": File too large; what was sent before is kept: " + std::to_string(kept.size()) +
                                  " bytes\n");
        EXPECT_GT(kept.size(), kNoWholePackets / 2);
        return kept;
    };
    EXPECT_EQ(send("out.ts").size() % 188, 0U);
    // Behind each tag of FLV stands its size: of a head of 11 bytes, which has that of the content, and the content.
    const std::string flv = send("out.flv");
    const auto number = [&flv](std::size_t at, std::size_t count) {
        std::size_t value = 0;
        for (const char byte : flv.substr(at, count)) {
            value = value << 8U | static_cast<unsigned char>(byte);
        }
        return value;
    };
    const std::size_t last = number(flv.size() - 4, 4);
    ASSERT_LT(last, flv.size());
    EXPECT_EQ(number(flv.size() - 4 - last + 1, 3) + 11, last);
}

}  // namespace
