#include "Host/Lineup/Files/PartialFile.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using lineup::PartialFile;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

constexpr const char* kName = ".bars.mov.lineup-abc123.partial";

TEST(PartialFile, IsLockedWhileItIsOpen) {
    const TemporaryFolder folder;
    PartialFile file;
    ASSERT_EQ(file.Open(folder / "bars.mov"), 0);
    const int other = open((folder / folder.Names().front()).c_str(), O_RDWR);
    EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
    close(other);
}

TEST(PartialFile, GoesAwayUnlessItGotItsName) {
    const TemporaryFolder folder;
    std::optional<PartialFile> file(std::in_place);
    ASSERT_EQ(file->Open(folder / "bars.mov"), 0);
    EXPECT_THAT(folder.Names(), ElementsAre(MatchesRegex("\\.bars\\.mov\\.lineup-[a-z0-9]{6}\\.partial")));
    file.reset();
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(PartialFile, GetsItsNameAndStays) {
    const TemporaryFolder folder;
    std::optional<PartialFile> file(std::in_place);
    ASSERT_EQ(file->Open(folder / "bars.mov"), 0);
    EXPECT_EQ(file->Rename(folder / "bars.mov", false), 0);
    EXPECT_EQ(file->Close(), 0);
    file.reset();
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
}

TEST(PartialFile, SaysWhyItCannotGetItsName) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "there.mov", "old");
    PartialFile file;
    ASSERT_EQ(file.Open(folder / "bars.mov"), 0);
    EXPECT_EQ(file.Rename(folder / "there.mov", false), EEXIST);
    EXPECT_EQ(file.Rename(folder / "nowhere/bars.mov", false), ENOENT);
    EXPECT_EQ(file.Rename(folder / "nowhere/bars.mov", true), ENOENT);
    EXPECT_THAT(folder.Names(), SizeIs(2));
}

TEST(AbandonedFiles, AreRemovedWhateverTheyWereToBeNamed) {
    const TemporaryFolder folder;
    test::WriteFile(folder / kName, "half");
    test::WriteFile(folder / ".card.png.lineup-zzzzzz.partial", "");
    lineup::RemoveAbandonedFiles(folder.Path());
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(AbandonedFiles, AreOnlyThoseNamedSo) {
    const TemporaryFolder folder;
    const std::vector<std::string> others = {
        "..lineup-abc123.partial.mov",  ".bars.lineup-abc123.part",    ".bars.lineup-abc12.partial",
        ".bars.lineup-abc1234.partial", ".bars.lineup-ABC123.partial", ".lineup-abc123.partial",
        ".bars.otherup-abc123.partial", "bars.lineup-abc123.partial",
    };
    for (const std::string& name : others) {
        test::WriteFile(folder / name, "mine");
    }
    lineup::RemoveAbandonedFiles(folder.Path());
    EXPECT_THAT(folder.Names(), testing::UnorderedElementsAreArray(others));
}

TEST(AbandonedFiles, AreNotThoseThatAreBeingWritten) {
    const TemporaryFolder folder;
    PartialFile file;
    ASSERT_EQ(file.Open(folder / "bars.mov"), 0);
    lineup::RemoveAbandonedFiles(folder.Path());
    EXPECT_THAT(folder.Names(), SizeIs(1));
    EXPECT_EQ(file.Rename(folder / "bars.mov", false), 0);
    lineup::RemoveAbandonedFiles(folder.Path());
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
}

TEST(AbandonedFiles, AreRegularFilesAndNoLinks) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "precious", "mine");
    fs::create_symlink("precious", folder / kName);
    fs::create_directory(folder / ".a.lineup-abc123.partial");
    mkfifo((folder / ".b.lineup-abc123.partial").c_str(), 0600);
    lineup::RemoveAbandonedFiles(folder.Path());
    EXPECT_THAT(folder.Names(), SizeIs(4));
}

TEST(AbandonedFiles, OfAnotherUserStay) {
    const TemporaryFolder folder;
    test::WriteFile(folder / kName, "theirs");
    constexpr uid_t kNobody = 65534;
    if (chown((folder / kName).c_str(), kNobody, kNobody) != 0) {
        GTEST_SKIP() << "this process may not give files away";
    }
    lineup::RemoveAbandonedFiles(folder.Path());
    EXPECT_THAT(folder.Names(), ElementsAre(kName));
}

TEST(AbandonedFiles, AreNotLookedForInAFolderThatIsNotThere) {
    const TemporaryFolder folder;
    lineup::RemoveAbandonedFiles(folder / "nowhere");
    EXPECT_THAT(folder.Names(), IsEmpty());
}

}  // namespace
