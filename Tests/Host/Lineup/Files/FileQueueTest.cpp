// A file queue on a disk that is slow to the instant: every write waits until the caller can do no more, or has done
// what it must not do before the write is through. The disk stands in front of the C library's write.

#include <lineup/Error.h>
#include "Host/Lineup/Files/FileQueue.h"
#include "Host/Lineup/Files/TargetFile.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <functional>
#include <optional>
#include <sched.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using lineup::FileQueue;
using lineup::TargetFile;

std::function<bool()> gBeforeWrite;  // false: the disk is full

}  // namespace

extern "C" __attribute__((visibility("default"))) ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    if (gBeforeWrite && !gBeforeWrite()) {
        errno = ENOSPC;
        return -1;
    }
    return reinterpret_cast<decltype(&write)>(dlsym(RTLD_NEXT, "write"))(descriptor, bytes, count);
}

namespace {

// Whether a thread of this process waits for something.
bool Sleeps(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::size_t name = text.rfind(')');
    return name != std::string::npos && text.substr(name + 2, 1) == "S";
}

// Words that count from 0: one that is lost, doubled or overwritten shows.
class FileQueueOnASlowDisk : public testing::Test {
protected:
    // A piece neither divides a block nor is it divided by one.
    static constexpr std::size_t kPieceWords = 50'001;
    static constexpr std::size_t kPieceBytes = kPieceWords * sizeof(std::uint32_t);
    static_assert(kPieceBytes <= FileQueue::kRoomBytes && FileQueue::kBlockBytes % kPieceBytes != 0);

    FileQueueOnASlowDisk() {
        gBeforeWrite = [this] { return LetThroughWhenTheCallerWaits(); };
    }
    ~FileQueueOnASlowDisk() override { gBeforeWrite = nullptr; }

    void AddPiece(FileQueue& queue) {
        for (std::size_t i = 0; i < kPieceWords; ++i, ++mWords) {
            std::memcpy(queue.Room() + i * sizeof mWords, &mWords, sizeof mWords);
        }
        queue.Add(kPieceBytes);
    }
    void AddBlocks(FileQueue& queue, std::size_t blocks) {
        while (mWords * sizeof mWords < blocks * FileQueue::kBlockBytes) {
            AddPiece(queue);
        }
    }
    // The caller does nothing more by itself until the disk is done.
    void Rest() { mResting = true; }

    void BreakDown() { mFull = true; }

    [[nodiscard]] TargetFile& File() { return *mFile; }
    [[nodiscard]] std::size_t Writes() const { return mWrites; }
    [[nodiscard]] std::size_t Bytes() const { return mWords * sizeof mWords; }

    // The first `bytes` bytes of the words, and nothing else, are in the file that was given its name.
    void ExpectTheFirst(std::size_t bytes) {
        File().Commit(lineup::Disk::DoNotWait);
        const std::string contents = test::ReadFile(mFolder.Path() / "words");
        ASSERT_EQ(contents.size(), bytes);
        for (std::uint32_t i = 0; i < bytes / sizeof i; ++i) {
            std::uint32_t word = 0;
            std::memcpy(&word, contents.data() + i * sizeof word, sizeof word);
            ASSERT_EQ(word, i) << "as word " << i << ", in block " << i * sizeof i / FileQueue::kBlockBytes;
        }
    }

private:
    bool LetThroughWhenTheCallerWaits() {
        while (!mResting && !Sleeps(mCaller)) {
            sched_yield();
        }
        ++mWrites;
        return !mFull;
    }

    const pid_t mCaller = gettid();
    test::TemporaryFolder mFolder;
    std::optional<TargetFile> mFile{std::in_place, mFolder.Path() / "words", false};
    std::uint32_t mWords = 0;
    std::atomic<bool> mResting = false;
    std::atomic<bool> mFull = false;
    std::atomic<std::size_t> mWrites = 0;
};

// Were a block filled again before it is written, its words would be those of a later one.
TEST_F(FileQueueOnASlowDisk, WritesEachBlockBeforeItIsFilledAgain) {
    FileQueue queue(File());
    AddBlocks(queue, 12);
    queue.Finish();
    EXPECT_EQ(Writes(), 13U);
    ExpectTheFirst(Bytes());
}

TEST_F(FileQueueOnASlowDisk, LetsTheCallerFillSeveralBlocksAhead) {
    FileQueue queue(File());
    AddBlocks(queue, 3);  // would never return if it waited for one of these to be written
    EXPECT_EQ(Writes(), 0U);
    Rest();
    queue.Finish();
    ExpectTheFirst(Bytes());
}

TEST_F(FileQueueOnASlowDisk, IsFinishedWhenTheLastBlockIsWritten) {
    FileQueue queue(File());
    AddPiece(queue);
    queue.Finish();
    EXPECT_EQ(Writes(), 1U);
    ExpectTheFirst(kPieceBytes);
}

TEST_F(FileQueueOnASlowDisk, WritesTheFullBlocksOfAQueueThatIsGivenUp) {
    {
        FileQueue queue(File());
        AddBlocks(queue, 2);
    }
    EXPECT_EQ(Writes(), 2U);
    ExpectTheFirst(2 * FileQueue::kBlockBytes);
}

TEST_F(FileQueueOnASlowDisk, TellsACallerThatWaitsThatTheDiskIsFull) {
    BreakDown();
    FileQueue queue(File());
    EXPECT_THROW(AddBlocks(queue, 12), lineup::Error);
    EXPECT_EQ(Writes(), 1U);  // the blocks that followed were not tried
    EXPECT_LE(Bytes(), 4 * FileQueue::kBlockBytes + kPieceBytes);
}

}  // namespace
