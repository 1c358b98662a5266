#include "Tests/Apps/lineup/Files/WritingProgram.h"
#include "Tests/Support/Deprivation.h"

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

}  // namespace
