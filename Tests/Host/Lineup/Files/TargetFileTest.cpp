#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Files/TargetFile.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using lineup::TargetFile;
using test::ReadBytes;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::MatchesRegex;

constexpr std::array<std::uint8_t, 3> kAbc = {'a', 'b', 'c'};
const std::vector<std::uint8_t> kOldBytes = {'o', 'l', 'd'};

TEST(TargetFile, IsHiddenBesideItsTargetUntilItIsWhole) {
    const TemporaryFolder folder;
    TargetFile file(folder / "bars.mov", false);
    EXPECT_TRUE(file.Write(kAbc));
    EXPECT_THAT(folder.Names(), ElementsAre(MatchesRegex("\\.bars\\.mov\\.lineup-[a-z0-9]{6}\\.partial")));
    file.Commit();
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
    EXPECT_THAT(ReadBytes(folder / "bars.mov"), ElementsAre('a', 'b', 'c'));
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
        EXPECT_EQ(ReadBytes(folder / "bars.mov"), kOldBytes);
    }
    EXPECT_EQ(ReadBytes(folder / "bars.mov"), kOldBytes);
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
}

TEST(TargetFile, ReplacesTheOldFileOnlyWhenToldSo) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "bars.mov", "old");
    EXPECT_THROW(TargetFile(folder / "bars.mov", false), lineup::UsageError);
    EXPECT_EQ(ReadBytes(folder / "bars.mov"), kOldBytes);

    TargetFile file(folder / "bars.mov", true);
    file.Write(kAbc);
    file.Commit();
    EXPECT_THAT(ReadBytes(folder / "bars.mov"), ElementsAre('a', 'b', 'c'));
}

TEST(TargetFile, DoesNotReplaceAFileThatAppearedMeanwhile) {
    const TemporaryFolder folder;
    {
        TargetFile file(folder / "bars.mov", false);
        file.Write(kAbc);
        test::WriteFile(folder / "bars.mov", "old");
        EXPECT_THROW(file.Commit(), lineup::UsageError);
    }
    EXPECT_EQ(ReadBytes(folder / "bars.mov"), kOldBytes);
    EXPECT_THAT(folder.Names(), ElementsAre("bars.mov"));
}

std::string Refusal(const std::filesystem::path& target) {
    try {
        const TargetFile file(target, true);
        return "none";
    } catch (const lineup::Error& error) {
        return error.what();
    }
}

TEST(TargetFile, RefusesATargetThatIsNoFileAndSaysWhatItIs) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "folder.mov");
    mkfifo((folder / "pipe.mov").c_str(), 0600);
    std::filesystem::create_symlink("nowhere", folder / "dangling.mov");
    const auto refusal = [&folder](const char* name, const char* what) {
        return "cannot write " + (folder / name).string() + ": it is " + what + ", not a file that can be replaced";
    };
    EXPECT_EQ(Refusal(folder / "folder.mov"), refusal("folder.mov", "a folder"));
    EXPECT_EQ(Refusal(folder / "pipe.mov"), refusal("pipe.mov", "a pipe"));
    EXPECT_EQ(Refusal(folder / "dangling.mov"), refusal("dangling.mov", "a link that leads nowhere"));
    EXPECT_EQ(Refusal("/dev/full"), "cannot write /dev/full: it is a device, not a file that can be replaced");
}

TEST(TargetFile, RefusesASocket) {
    const TemporaryFolder folder;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = (folder / "socket.mov").string();
    name.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(descriptor);
    EXPECT_EQ(Refusal(name), "cannot write " + name + ": it is a socket, not a file that can be replaced");
}

TEST(TargetFile, RefusesALinkThatLeadsInACircle) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("b.mov", folder / "a.mov");
    std::filesystem::create_symlink("a.mov", folder / "b.mov");
    EXPECT_EQ(Refusal(folder / "a.mov"),
              "cannot replace " + (folder / "a.mov").string() + ": Too many levels of symbolic links");
}

TEST(TargetFile, FollowsALinkToTheFileItStandsFor) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "real.mov", "old");
    std::filesystem::create_symlink("real.mov", folder / "link.mov");
    TargetFile file(folder / "link.mov", true);
    file.Write(kAbc);
    file.Commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.mov"));
    EXPECT_THAT(ReadBytes(folder / "real.mov"), ElementsAre('a', 'b', 'c'));
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
    EXPECT_THAT(ReadBytes(folder / "bars.mov"), ElementsAre('a', 'a', 'c'));
}

TEST(TargetFile, RemembersThatAMoveFailedAndRefusesToCommit) {
    const TemporaryFolder folder;
    TargetFile file(folder / "bars.mov", false);
    EXPECT_FALSE(file.Seek(-1));
    EXPECT_EQ(file.Errno(), EINVAL);
    EXPECT_THROW(file.Commit(), lineup::Error);
}

}  // namespace
