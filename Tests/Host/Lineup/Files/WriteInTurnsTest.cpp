// Pieces of a file made by several threads. What the threads meet (a piece that is made late, one that fails, a system
// that gives no more threads) is arranged, not waited for.

#include <lineup/Error.h>
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Files/WriteInTurns.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <dlfcn.h>
#include <optional>
#include <pthread.h>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

std::atomic<bool> gNoMoreThreads = false;

}  // namespace

extern "C" __attribute__((visibility("default"))) int pthread_create(pthread_t* thread, const pthread_attr_t* with,
                                                                     void* (*start)(void*), void* argument) noexcept {
    if (gNoMoreThreads) {
        return EAGAIN;
    }
    return reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"))(thread, with, start,
                                                                                           argument);
}

namespace {

using lineup::kPieceBytes;
using lineup::MakePiece;
using lineup::TargetFile;
using lineup::WriteInTurns;

constexpr auto kPiece = static_cast<std::int64_t>(kPieceBytes);

// Words that count from 0: one that is lost, doubled or out of its turn shows.
void Count(std::int64_t at, std::span<std::uint8_t> piece) {
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const auto byte = static_cast<std::uint64_t>(at) + i;
        piece[i] = static_cast<std::uint8_t>((byte / 4) >> (8 * (byte % 4)));
    }
}

class InTurns : public testing::Test {
protected:
    ~InTurns() override { gNoMoreThreads = false; }

    void Write(std::int64_t bytes, const MakePiece& make) {
        WriteInTurns(
            File(), bytes, [&] { return make; }, [&](std::int64_t written) { mTold.push_back(written); });
    }

    // The first `bytes` bytes of the words, and nothing else, are in the file that was given its name.
    void ExpectWords(std::int64_t bytes) {
        File().Commit(lineup::Disk::DoNotWait);
        const std::string contents = test::ReadFile(mFolder.Path() / "words");
        std::vector<std::uint8_t> words(static_cast<std::size_t>(bytes));
        Count(0, words);
        ASSERT_EQ(contents.size(), words.size());
        for (std::size_t i = 0; i < words.size(); ++i) {
            ASSERT_EQ(static_cast<std::uint8_t>(contents[i]), words[i])
                << "byte " << i << ", piece " << i / kPieceBytes;
        }
    }

    [[nodiscard]] TargetFile& File() { return *mFile; }
    [[nodiscard]] const std::vector<std::int64_t>& Told() const { return mTold; }

private:
    test::TemporaryFolder mFolder;
    std::optional<TargetFile> mFile{std::in_place, mFolder.Path() / "words", false};
    std::vector<std::int64_t> mTold;
};

TEST_F(InTurns, FilesOfAnyLengthAreWholeAndInOrder) {
    for (const std::int64_t bytes :
         {std::int64_t{0}, std::int64_t{1}, kPiece - 1, kPiece, kPiece + 1, 9 * kPiece + 7}) {
        const test::TemporaryFolder folder;
        TargetFile file(folder.Path() / "words", false);
        WriteInTurns(
            file, bytes, [] { return Count; }, [](std::int64_t /*written*/) {});
        file.Commit(lineup::Disk::DoNotWait);
        const std::string contents = test::ReadFile(folder.Path() / "words");
        std::vector<std::uint8_t> words(static_cast<std::size_t>(bytes));
        Count(0, words);
        ASSERT_EQ(contents.size(), words.size());
        EXPECT_TRUE(std::ranges::equal(contents, words, {}, [](char byte) { return static_cast<std::uint8_t>(byte); }))
            << bytes << " bytes";
    }
}

TEST_F(InTurns, APieceThatIsMadeFirstWaitsForThoseBeforeIt) {
    if (std::thread::hardware_concurrency() < 2) {
        GTEST_SKIP() << "one processor: there is one thread";
    }
    std::atomic<bool> isSecondMade = false;
    Write(2 * kPiece, [&](std::int64_t at, std::span<std::uint8_t> piece) {
        Count(at, piece);
        if (at == 0) {
            isSecondMade.wait(false);
        } else {
            isSecondMade = true;
            isSecondMade.notify_all();
        }
    });
    ExpectWords(2 * kPiece);
}

TEST_F(InTurns, ItIsSaidOnTheCallersThreadHowFarTheFileIs) {
    gNoMoreThreads = true;
    Write(3 * kPiece + 5, Count);
    EXPECT_EQ(Told(), (std::vector{kPiece, 2 * kPiece, 3 * kPiece, 3 * kPiece + 5}));
    ExpectWords(3 * kPiece + 5);
}

TEST_F(InTurns, AMakerThatFailsEndsItAndItsReasonIsTold) {
    for (const std::int64_t bad : {std::int64_t{0}, 1 * kPiece, 5 * kPiece}) {
        const test::TemporaryFolder folder;
        TargetFile file(folder.Path() / "words", false);
        const auto make = [&](std::int64_t at, std::span<std::uint8_t> piece) {
            if (at == bad) {
                throw std::runtime_error("no sound");
            }
            Count(at, piece);
        };
        EXPECT_THROW(WriteInTurns(
                         file, 9 * kPiece, [&] { return make; }, [](std::int64_t /*written*/) {}),
                     std::runtime_error);
        EXPECT_LE(file.Size(), bad) << "what comes behind the piece that is missing must not be written";
    }
}

TEST_F(InTurns, NothingMoreIsWrittenWhenTheCallerStops) {
    gNoMoreThreads = true;
    const auto stop = [](std::int64_t written) {
        if (written == 2 * kPiece) {
            throw std::runtime_error("stop");
        }
    };
    EXPECT_THROW(WriteInTurns(
                     File(), 9 * kPiece, [] { return Count; }, stop),
                 std::runtime_error);
    EXPECT_EQ(File().Size(), 2 * kPiece);
}

TEST_F(InTurns, EachThreadMakesWithAMakerOfItsOwn) {
    std::atomic<int> makers = 0;
    WriteInTurns(
        File(), 20 * kPiece,
        [&]() -> MakePiece {
            ++makers;
            return [thread = std::this_thread::get_id()](std::int64_t at, std::span<std::uint8_t> piece) {
                EXPECT_EQ(thread, std::this_thread::get_id());
                Count(at, piece);
            };
        },
        [](std::int64_t /*written*/) {});
    EXPECT_GE(makers, 1);
    EXPECT_LE(makers, 3);
    ExpectWords(20 * kPiece);
}

}  // namespace
