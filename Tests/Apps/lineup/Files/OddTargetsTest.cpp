#include "Tests/Apps/lineup/Files/WritingProgram.h"
#include "Tests/Support/Deprivation.h"

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class OddTargets : public test::WritingProgram {
protected:
    // Writes as somebody whom permissions hold back.
    [[nodiscard]] test::Ending RunAsAnyone() const { return Run(test::LoseTheSuperusersRights); }
};

TEST_P(OddTargets, AFolderThatMayNotBeWrittenIsSaid) {
    fs::permissions(Folder(), fs::perms::owner_read | fs::perms::owner_exec);
    const auto ending = RunAsAnyone();
    fs::permissions(Folder(), fs::perms::owner_all);
    ExpectSentence(ending, std::string("cannot open ") + GetParam().target + " for writing: Permission denied");
    ExpectTheEarlierFileAlone();
}

TEST_P(OddTargets, AFolderThatMayNotBeReadTakesAFileAllTheSame) {
    fs::permissions(Folder(), fs::perms::owner_write | fs::perms::owner_exec);
    const auto ending = RunAsAnyone();
    fs::permissions(Folder(), fs::perms::owner_all);
    EXPECT_EQ(ending.exitCode, 0) << ending.err;
    EXPECT_NE(test::ReadFile(Target()), test::kPrecious);
    EXPECT_THAT(test::NamesIn(Folder()), ElementsAre(GetParam().target));
}

TEST_P(OddTargets, AFileThatMayNotBeWrittenIsNotReplaced) {
    fs::permissions(Target(), fs::perms::owner_read);
    ExpectSentence(RunAsAnyone(), std::string("cannot replace ") + GetParam().target +
                                      ", which may not be written: Permission denied");
    ExpectTheEarlierFileAlone();
}

TEST_P(OddTargets, ALinkStaysAndTheFileItLeadsToIsReplaced) {
    fs::create_directory(Folder() / "elsewhere");
    fs::rename(Target(), Folder() / "elsewhere/real");
    fs::create_symlink("elsewhere/real", Target());
    EXPECT_EQ(Run().exitCode, 0);
    EXPECT_EQ(fs::read_symlink(Target()), "elsewhere/real");
    EXPECT_NE(test::ReadFile(Target()), test::kPrecious);
    EXPECT_THAT(test::NamesIn(Folder() / "elsewhere"), ElementsAre("real"));
    EXPECT_EQ(test::NamesIn(Folder()).size(), 2U);
}

TEST_P(OddTargets, ALinkThatLeadsNowhereIsSaidAndStays) {
    fs::remove(Target());
    fs::create_symlink("nowhere", Target());
    ExpectSentence(Run(), "it is a link that leads nowhere");
    EXPECT_EQ(fs::read_symlink(Target()), "nowhere");
    EXPECT_THAT(test::NamesIn(Folder()), ElementsAre(GetParam().target));
}

TEST_P(OddTargets, ADeviceIsSaidAndNotReplaced) {
    for (const char* const device : {"/dev/null", "/dev/full"}) {
        fs::remove(Target());
        fs::create_symlink(device, Target());
        ExpectSentence(Run(), "it is a device, not a file that can be replaced");
        EXPECT_TRUE(fs::is_character_file(device));
        EXPECT_THAT(test::NamesIn(Folder()), ElementsAre(GetParam().target));
    }
}

TEST_P(OddTargets, APipeIsSaidAndNotWaitedFor) {
    fs::remove(Target());
    ASSERT_EQ(mkfifo(Target().c_str(), 0600), 0);
    ExpectSentence(Run(), "it is a pipe, not a file that can be replaced");
    EXPECT_TRUE(fs::is_fifo(Target()));
}

TEST_P(OddTargets, AFolderOfThatNameIsSaidAndStays) {
    fs::remove(Target());
    fs::create_directory(Target());
    ExpectSentence(Run(), "it is a folder, not a file that can be replaced");
    EXPECT_TRUE(fs::is_directory(Target()));
}

TEST_P(OddTargets, AReplacedFileKeepsItsPermissions) {
    fs::permissions(Target(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_write);
    EXPECT_EQ(Run().exitCode, 0);
    EXPECT_EQ(fs::status(Target()).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_write);
}

TEST_P(OddTargets, AnotherNameOfAReplacedFileKeepsTheEarlierOne) {
    fs::create_hard_link(Target(), Folder() / "other");
    EXPECT_EQ(Run().exitCode, 0);
    EXPECT_EQ(test::ReadFile(Folder() / "other"), test::kPrecious);
    EXPECT_NE(test::ReadFile(Target()), test::kPrecious);
}

INSTANTIATE_TEST_SUITE_P(Program, OddTargets, testing::ValuesIn(test::Writers()), test::NameOf);

// A path that is a device itself; media files and pictures are told by their names' endings.
TEST(Settings, AreNotWrittenToADevice) {
    const test::TemporaryFolder folder;
    const auto ending = test::RunChild({TEST_LINEUP, "settings", "/dev/full", "--defaults", "-y"}, folder.Path());
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_EQ(ending.err, "lineup: cannot write /dev/full: it is a device, not a file that can be replaced\n");
    EXPECT_THAT(ending.out, IsEmpty());
}

}  // namespace
