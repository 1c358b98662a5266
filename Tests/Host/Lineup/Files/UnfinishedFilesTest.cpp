#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Files/UnfinishedFiles.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <climits>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using lineup::TargetFile;
using lineup::UnfinishedFile;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kAsExpected = 0;
constexpr int kOtherwise = 1;

// Runs `body` in a process of its own: once its files are removed, a process can write no others.
template <typename Body>
void InAChildThatEnds(Body body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        std::exit(body() ? kAsExpected : kOtherwise);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kAsExpected);
}

TEST(UnfinishedFiles, AreAllRemovedAtOnce) {
    const TemporaryFolder folder;
    InAChildThatEnds([&folder] {
        const TargetFile a(folder / "a.mov", false);
        const TargetFile b(folder / "b.mov", false);
        const bool areThere = folder.Names().size() == 2;
        lineup::RemoveUnfinishedFiles();
        return areThere && folder.Names().empty();
    });
}

TEST(UnfinishedFiles, AreNotThoseThatHaveTheirNames) {
    const TemporaryFolder folder;
    InAChildThatEnds([&folder] {
        TargetFile a(folder / "a.mov", false);
        a.Commit();
        const TargetFile b(folder / "b.mov", false);
        lineup::RemoveUnfinishedFiles();
        return true;
    });
    EXPECT_THAT(folder.Names(), ElementsAre("a.mov"));
}

TEST(UnfinishedFiles, CannotBeBegunWhenTheProcessEnds) {
    const TemporaryFolder folder;
    InAChildThatEnds([&folder] {
        lineup::RemoveUnfinishedFiles();
        UnfinishedFile file;
        return file.Open((folder / "a").string()) == -1 && errno == EINTR;
    });
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(UnfinishedFiles, AreForgottenOneByOneSoThatThereIsAlwaysRoom) {
    const TemporaryFolder folder;
    InAChildThatEnds([&folder] {
        for (int i = 0; i < 100; ++i) {
            UnfinishedFile file;
            close(file.Open((folder / std::to_string(i)).string()));
        }
        lineup::RemoveUnfinishedFiles();
        return folder.Names().size() == 100;
    });
}

TEST(UnfinishedFiles, BeyondSixteenAreWrittenAndStay) {
    const TemporaryFolder folder;
    InAChildThatEnds([&folder] {
        std::list<UnfinishedFile> files(17);
        char name = 'a';
        for (UnfinishedFile& file : files) {
            if (file.Open((folder / std::string(1, name++)).string()) < 0) {
                return false;
            }
        }
        lineup::RemoveUnfinishedFiles();
        return true;
    });
    EXPECT_THAT(folder.Names(), ElementsAre("q"));  // the seventeenth letter
}

TEST(UnfinishedFiles, OfNamesLongerThanAnyPathAreNotOpened) {
    UnfinishedFile file;
    EXPECT_EQ(file.Open("/" + std::string(PATH_MAX, 'x')), -1);
    EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST(UnfinishedFiles, KeepNoPlaceOnTheListForWhatCouldNotBeOpened) {
    const TemporaryFolder folder;
    InAChildThatEnds([&folder] {
        for (int i = 0; i < 100; ++i) {
            UnfinishedFile file;
            if (file.Open((folder / "nowhere/a").string()) != -1 || errno != ENOENT) {
                return false;
            }
        }
        UnfinishedFile file;
        close(file.Open((folder / "a").string()));
        lineup::RemoveUnfinishedFiles();
        return true;
    });
    EXPECT_THAT(folder.Names(), IsEmpty());
}

}  // namespace
