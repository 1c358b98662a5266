#include "Host/Lineup/Error.h"
#include "Host/Lineup/Export/TargetFile.h"
#include "Host/Lineup/Export/UsageError.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <string>
#include <sys/stat.h>

namespace {

using lineup::TargetFile;
using test::ReadFile;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::MatchesRegex;

constexpr std::array<std::uint8_t, 3> kAbc = {'a', 'b', 'c'};
const std::vector<std::uint8_t> kOld = {'o', 'l', 'd'};

TEST(TargetFile, IsHiddenBesideItsTargetUntilItIsWhole) {
    const TemporaryFolder folder;
    TargetFile file(folder / "bars.mov", false);
    EXPECT_TRUE(file.Write(kAbc));
    EXPECT_THAT(folder.Names(), ElementsAre(MatchesRegex("\\.bars\\.mov\\.lineup-[a-z0-9]{6}\\.partial")));
    file.Commit();
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
    EXPECT_THAT(ReadFile(folder / "bars.mov"), ElementsAre('a', 'b', 'c'));
}

TEST(TargetFile, LeavesNothingBehindWhenItIsNotCommitted) {
    const TemporaryFolder folder;
    {
        TargetFile file(folder / "bars.mov", false);
        file.Write(kAbc);
    }
    EXPECT_THAT(folder.Names(), ElementsAre());
}

TEST(TargetFile, LeavesTheOldFileWhenItIsNotCommitted) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "bars.mov", "old");
    {
        TargetFile file(folder / "bars.mov", true);
        file.Write(kAbc);
        EXPECT_EQ(ReadFile(folder / "bars.mov"), kOld);
    }
    EXPECT_EQ(ReadFile(folder / "bars.mov"), kOld);
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
}

TEST(TargetFile, ReplacesTheOldFileOnlyWhenToldSo) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "bars.mov", "old");
    EXPECT_THROW(TargetFile(folder / "bars.mov", false), lineup::UsageError);
    EXPECT_EQ(ReadFile(folder / "bars.mov"), kOld);

    TargetFile file(folder / "bars.mov", true);
    file.Write(kAbc);
    file.Commit();
    EXPECT_THAT(ReadFile(folder / "bars.mov"), ElementsAre('a', 'b', 'c'));
}

TEST(TargetFile, DoesNotReplaceAFileThatAppearedMeanwhile) {
    const TemporaryFolder folder;
    {
        TargetFile file(folder / "bars.mov", false);
        file.Write(kAbc);
        test::WriteFile(folder / "bars.mov", "old");
        EXPECT_THROW(file.Commit(), lineup::UsageError);
    }
    EXPECT_EQ(ReadFile(folder / "bars.mov"), kOld);
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
}

TEST(TargetFile, RefusesATargetThatIsNoFile) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "folder.mov");
    mkfifo((folder / "pipe.mov").c_str(), 0600);
    std::filesystem::create_symlink("nowhere", folder / "dangling.mov");
    for (const char* name : {"folder.mov", "pipe.mov", "dangling.mov"}) {
        EXPECT_THROW(TargetFile(folder / name, true), lineup::UsageError) << name;
    }
    EXPECT_THROW(TargetFile("/dev/full", true), lineup::UsageError);
}

TEST(TargetFile, FollowsALinkToTheFileItStandsFor) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "real.mov", "old");
    std::filesystem::create_symlink("real.mov", folder / "link.mov");
    TargetFile file(folder / "link.mov", true);
    file.Write(kAbc);
    file.Commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.mov"));
    EXPECT_THAT(ReadFile(folder / "real.mov"), ElementsAre('a', 'b', 'c'));
}

TEST(TargetFile, SaysWhyItsFolderCannotBeWritten) {
    try {
        const TargetFile file("/nonesuch/bars.mov", false);
        FAIL() << "was opened";
    } catch (const lineup::Error& error) {
        EXPECT_STREQ(error.what(), "cannot open /nonesuch/bars.mov for writing: No such file or directory");
    }
}

TEST(TargetFile, TakesNamesAsLongAsTheFileSystemDoes) {
    const TemporaryFolder folder;
    const std::string name = std::string(251, 'x') + ".mov";
    TargetFile file(folder / name, false);
    file.Commit();
    EXPECT_THAT(folder.Names(), ElementsAre(name));
}

TEST(TargetFile, WritesWhereItWasMovedTo) {
    const TemporaryFolder folder;
    TargetFile file(folder / "bars.mov", false);
    file.Write(kAbc);
    EXPECT_TRUE(file.Seek(1));
    file.Write(std::span(kAbc).first(1));
    EXPECT_EQ(file.Position(), 2);
    EXPECT_EQ(file.Size(), 3);
    file.Commit();
    EXPECT_THAT(ReadFile(folder / "bars.mov"), ElementsAre('a', 'a', 'c'));
}

TEST(TargetFile, RemembersThatAMoveFailedAndRefusesToCommit) {
    const TemporaryFolder folder;
    TargetFile file(folder / "bars.mov", false);
    EXPECT_FALSE(file.Seek(-1));
    EXPECT_EQ(file.Errno(), EINVAL);
    EXPECT_THROW(file.Commit(), lineup::Error);
}

}  // namespace
