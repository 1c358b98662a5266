// What becomes of a file when the system refuses what it grants elsewhere: file systems that cannot rename without
// replacing, cannot be waited for, or are interrupted. The refusals stand in front of the C library's functions.

#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Export/Media/WriteGatherer.h"
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Files/WriteInTurns.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using lineup::kPieceBytes;
using lineup::TargetFile;
using lineup::WriteGatherer;
using lineup::WriteInTurns;
using test::ReadFile;
using testing::ElementsAre;
using testing::IsEmpty;

// What the next calls answer: an errno value, or 0 for what the system itself answers.
struct Refusals {
    int renameat2 = 0;
    int link = 0;
    int rename = 0;
    int fsyncFile = 0;
    int fsyncFolder = 0;
    int interruptedWrites = 0;        // how many are interrupted
    int goodWrites = 0;               // how many are granted before those that are refused
    int interruptedLocks = 0;         // how many are interrupted
    int write = 0;                    // of the writes that are neither interrupted nor granted
    int waits = 0;                    // counts the files and folders that were waited for
    std::function<void(int)> onLock;  // called before a lock is taken, with the descriptor
};
Refusals gRefusals;

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int Refuse(int error) {
    errno = error;
    return -1;
}

bool IsFolder(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                                                     unsigned flags) noexcept {
    return gRefusals.renameat2 != 0 ? Refuse(gRefusals.renameat2)
                                    : Real<decltype(renameat2)>("renameat2")(fromFolder, from, toFolder, to, flags);
}

__attribute__((visibility("default"))) int link(const char* from, const char* to) noexcept {
    return gRefusals.link != 0 ? Refuse(gRefusals.link) : Real<decltype(link)>("link")(from, to);
}

__attribute__((visibility("default"))) int rename(const char* from, const char* to) noexcept {
    return gRefusals.rename != 0 ? Refuse(gRefusals.rename) : Real<decltype(rename)>("rename")(from, to);
}

__attribute__((visibility("default"))) int fsync(int descriptor) {
    ++gRefusals.waits;
    const int error = IsFolder(descriptor) ? gRefusals.fsyncFolder : gRefusals.fsyncFile;
    return error != 0 ? Refuse(error) : Real<decltype(fsync)>("fsync")(descriptor);
}

__attribute__((visibility("default"))) int flock(int descriptor, int operation) noexcept {
    if (gRefusals.interruptedLocks > 0) {
        --gRefusals.interruptedLocks;
        return Refuse(EINTR);
    }
    if (gRefusals.onLock) {
        std::exchange(gRefusals.onLock, {})(descriptor);
    }
    return Real<decltype(flock)>("flock")(descriptor, operation);
}

__attribute__((visibility("default"))) ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    if (gRefusals.interruptedWrites > 0) {
        --gRefusals.interruptedWrites;
        return Refuse(EINTR);
    }
    if (gRefusals.goodWrites > 0) {
        --gRefusals.goodWrites;
        return Real<decltype(write)>("write")(descriptor, bytes, count);
    }
    return gRefusals.write != 0 ? Refuse(gRefusals.write) : Real<decltype(write)>("write")(descriptor, bytes, count);
}

}  // extern "C"

namespace {

class FailingSystem : public testing::Test {
protected:
    ~FailingSystem() override { gRefusals = {}; }

    [[nodiscard]] const std::filesystem::path& Folder() const { return mFolder.Path(); }
    [[nodiscard]] std::filesystem::path Target() const { return Folder() / "bars.mov"; }

    // The names of everything in the folder, hidden files too, sorted.
    [[nodiscard]] std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    // The error of writing "abc" to the target, or "none".
    [[nodiscard]] std::string ErrorOf(bool overwrite) const {
        constexpr std::array<std::uint8_t, 3> kAbc = {'a', 'b', 'c'};
        try {
            TargetFile file(Target(), overwrite);
            file.Write(kAbc);
            file.Commit();
            return "none";
        } catch (const lineup::Error& error) {
            return error.what();
        }
    }
    void ExpectWritten() const {
        EXPECT_EQ(ReadFile(Target()), "abc");
        EXPECT_THAT(Names(), ElementsAre("bars.mov"));
    }
    void ExpectTheEarlierFile() const {
        EXPECT_EQ(ReadFile(Target()), "old");
        EXPECT_THAT(Names(), ElementsAre("bars.mov"));
    }

private:
    test::TemporaryFolder mFolder;
};

TEST_F(FailingSystem, ThatCannotRenameWithoutReplacingLinks) {
    for (const int error : {EINVAL, ENOSYS}) {
        gRefusals.renameat2 = error;
        EXPECT_EQ(ErrorOf(false), "none");
        ExpectWritten();
        std::filesystem::remove(Target());
    }
}

TEST_F(FailingSystem, ThatLinksReplacesNothingEither) {
    gRefusals.renameat2 = ENOSYS;
    TargetFile file(Target(), false);
    test::WriteFile(Target(), "old");
    EXPECT_THROW(file.Commit(), lineup::UsageError);
    EXPECT_EQ(ReadFile(Target()), "old");
}

TEST_F(FailingSystem, ThatCannotLinkEitherLooksFirstAndRenames) {
    gRefusals.renameat2 = ENOSYS;
    gRefusals.link = EPERM;
    EXPECT_EQ(ErrorOf(false), "none");
    ExpectWritten();

    std::filesystem::remove(Target());
    TargetFile file(Target(), false);
    test::WriteFile(Target(), "old");
    EXPECT_THROW(file.Commit(), lineup::UsageError);
    EXPECT_EQ(ReadFile(Target()), "old");
}

TEST_F(FailingSystem, ThatCannotRenameAtAllIsSaid) {
    gRefusals.renameat2 = ENOSYS;
    gRefusals.link = EPERM;
    gRefusals.rename = EACCES;
    EXPECT_EQ(ErrorOf(false), "cannot give " + Target().string() + " its name: Permission denied");
    EXPECT_THAT(Names(), IsEmpty());
    test::WriteFile(Target(), "old");
    EXPECT_EQ(ErrorOf(true), "cannot give " + Target().string() + " its name: Permission denied");
    ExpectTheEarlierFile();
}

TEST_F(FailingSystem, ThatLosesWhatWasWrittenIsSaidBeforeTheEarlierFileGoes) {
    test::WriteFile(Target(), "old");
    gRefusals.fsyncFile = EIO;
    EXPECT_EQ(ErrorOf(true), "cannot write " + Target().string() + ": Input/output error");
    ExpectTheEarlierFile();
}

TEST_F(FailingSystem, ThatLosesTheNameIsSaid) {
    gRefusals.fsyncFolder = EIO;
    EXPECT_EQ(ErrorOf(false), "cannot write " + Target().string() + ": Input/output error");
}

TEST_F(FailingSystem, ThatCannotBeWaitedForIsNotWaitedFor) {
    gRefusals.fsyncFile = EINVAL;
    gRefusals.fsyncFolder = EINVAL;
    EXPECT_EQ(ErrorOf(false), "none");
    ExpectWritten();
}

TEST_F(FailingSystem, ThatIsInterruptedIsAskedAgain) {
    gRefusals.interruptedWrites = 2;
    gRefusals.interruptedLocks = 2;
    EXPECT_EQ(ErrorOf(false), "none");
    ExpectWritten();
}

TEST_F(FailingSystem, ThatRefusesTwiceIsQuotedWithItsFirstRefusal) {
    TargetFile file(Target(), false);
    gRefusals.write = ENOSPC;
    const std::array<std::uint8_t, 1> byte = {1};
    EXPECT_FALSE(file.Write(byte));
    gRefusals.write = EIO;
    EXPECT_FALSE(file.Write(byte));
    EXPECT_EQ(file.Errno(), ENOSPC);
}

// Another run that tidies up can come between the making of a file and its lock.
TEST_F(FailingSystem, ThatRemovesAFileBeforeItIsLockedGetsAnother) {
    gRefusals.onLock = [this](int) { std::filesystem::remove(Folder() / Names().front()); };
    EXPECT_EQ(ErrorOf(false), "none");
    ExpectWritten();
}

// A file gets its name between its opening and its lock: it is not abandoned then.
TEST_F(FailingSystem, ThatNamesAFileWhileItIsLookedAtKeepsIt) {
    const auto partial = Folder() / ".other.mov.lineup-abc123.partial";
    test::WriteFile(partial, "whole");
    gRefusals.onLock = [&](int) { std::filesystem::rename(partial, Folder() / "other.mov"); };
    EXPECT_EQ(ErrorOf(false), "none");
    EXPECT_THAT(Names(), ElementsAre("bars.mov", "other.mov"));
}

TEST_F(FailingSystem, ThatGivesAnAbandonedFilesNameToAnotherKeepsThat) {
    const auto partial = Folder() / ".other.mov.lineup-abc123.partial";
    test::WriteFile(partial, "left");
    gRefusals.onLock = [&](int) {
        std::filesystem::rename(partial, Folder() / "other.mov");
        test::WriteFile(partial, "another");
    };
    EXPECT_EQ(ErrorOf(false), "none");
    EXPECT_THAT(Names(), ElementsAre(partial.filename().string(), "bars.mov", "other.mov"));
}

TEST_F(FailingSystem, IsNotWaitedForWhereThatIsNotAskedFor) {
    for (const auto& [disk, waits] : {std::pair{lineup::Disk::Wait, 2}, {lineup::Disk::DoNotWait, 0}}) {
        TargetFile file(Target(), true);
        gRefusals.waits = 0;
        file.Commit(disk);
        EXPECT_EQ(gRefusals.waits, waits);
    }
}

// Whichever thread meets the full disk, and while others make or wait.
TEST_F(FailingSystem, ThatFillsUpUnderPiecesWrittenInTurnsIsSaid) {
    constexpr int kPieces = 12;
    for (const int good : {0, 1, 3, kPieces - 2, kPieces - 1}) {
        TargetFile file(Target(), false);
        gRefusals = {};
        gRefusals.goodWrites = good;
        gRefusals.write = ENOSPC;
        const auto fill = [&] {
            WriteInTurns(
                file, kPieces * static_cast<std::int64_t>(kPieceBytes),
                [] { return [](std::int64_t /*at*/, std::span<std::uint8_t> piece) { std::ranges::fill(piece, 7); }; },
                [](std::int64_t /*written*/) {});
        };
        EXPECT_THROW(fill(), lineup::Error) << good << " pieces fit";
        EXPECT_EQ(file.Errno(), ENOSPC);
        EXPECT_EQ(file.Size(), good * static_cast<std::int64_t>(kPieceBytes));
    }
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(FailingSystem, ThatFillsUpUnderGatheredPiecesSaysSoWhenTheyAreWritten) {
    const std::vector<std::uint8_t> field(16, 7);
    const std::vector<std::uint8_t> packet(1 << 20, 8);
    TargetFile file(Target(), false);
    WriteGatherer gatherer(file);
    gRefusals.write = ENOSPC;
    EXPECT_TRUE(gatherer.Write(field));
    EXPECT_FALSE(gatherer.Write(packet));
    EXPECT_EQ(gatherer.Errno(), ENOSPC);
    EXPECT_TRUE(gatherer.Write(field));
    EXPECT_FALSE(gatherer.Seek(0));
    EXPECT_TRUE(gatherer.Write(field));
    EXPECT_FALSE(gatherer.Flush());
}

}  // namespace
