// A decoder that a recording has taken over can do nothing but talk, and talking nonsense ends it.
#include <lineup/Error.h>
#include <lineup/Exporter.h>
#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using lineup::DecoderSettings;
using lineup::RecordingReader;
using lineup::Unreadable;
using testing::AnyOf;
using testing::HasSubstr;

constexpr const char* kDenied = "Permission denied";
constexpr const char* kNotPermitted = "Operation not permitted";
constexpr const char* kNoRight = "it tried to do what it has no right to (SIGSYS)";

DecoderSettings Hostile() {
    DecoderSettings settings;
    settings.program = TEST_HOSTILE_DECODER;
    return settings;
}

// What this kernel and this build let a process give up; tried once, in a child.
std::uint32_t CanGiveUp() {
    static const std::uint32_t givenUp = [] {
        const pid_t child = fork();
        if (child == 0) {
            _exit(static_cast<int>(lineup::decoding::GiveUpRights(lineup::decoding::InputKind::File)));
        }
        int status = 0;
        waitpid(child, &status, 0);
        return static_cast<std::uint32_t>(WEXITSTATUS(status));
    }();
    return givenUp;
}

class HostileDecoder : public test::TestFolder {
protected:
    [[nodiscard]] std::string File(const std::string& word) const {
        const std::filesystem::path file = Folder() / "recording";
        test::WriteFile(file, word);
        return file.string();
    }

    // Why the recording that makes it do `word` could not be read.
    [[nodiscard]] std::string FromFile(const std::string& word, const DecoderSettings& settings = Hostile()) const {
        return Open(File(word), settings);
    }

    [[nodiscard]] static std::string FromUrl(const std::string& word) { return Open("unix:///" + word, Hostile()); }

private:
    [[nodiscard]] static std::string Open(const std::string& recording, const DecoderSettings& settings) {
        try {
            static_cast<void>(RecordingReader::Open(recording, settings));
        } catch (const Unreadable& unreadable) {
            return unreadable.what();
        }
        return "it was read";
    }
};

#define NEEDS(right)                                                                           \
    if ((CanGiveUp() & lineup::decoding::right) == 0) {                                        \
        GTEST_SKIP() << "this kernel, or a sanitizer, leaves the process that right: " #right; \
    }

// The tests below leave out what is not given up.
TEST_F(HostileDecoder, GivesUpWhateverTheKernelCanTake) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer needs its rights";
#endif
    constexpr unsigned kAskForVersion = 1;
    const bool hasLandlock = syscall(SYS_landlock_create_ruleset, nullptr, 0, kAskForVersion) > 0;
    const bool hasFilters = prctl(PR_GET_SECCOMP) >= 0;
    EXPECT_EQ((CanGiveUp() & lineup::decoding::kFiles) != 0, hasLandlock);
    EXPECT_EQ((CanGiveUp() & lineup::decoding::kSystemCalls) != 0, hasFilters);
}

TEST_F(HostileDecoder, MayCrashAndBeFoundOut) {
    EXPECT_EQ(FromFile("crash"), "the decoder ended too early: it crashed (SIGSEGV, Segmentation fault)");
    EXPECT_EQ(FromFile("abort"), "the decoder ended too early: it crashed (SIGABRT, Aborted)");
    EXPECT_EQ(FromFile("exit"), "the decoder ended too early: it ended with exit code 7");
}

TEST_F(HostileDecoder, MayHangAndIsEnded) {
    DecoderSettings settings = Hostile();
    settings.silence = std::chrono::milliseconds(100);
    EXPECT_EQ(FromFile("loop", settings), "the decoder has said nothing for 0.1 s");
    EXPECT_EQ(FromFile("wait", settings), "the decoder has said nothing for 0.1 s");
}

TEST_F(HostileDecoder, MayGoAwayWithoutEnding) {
    EXPECT_EQ(FromFile("leave"), "the decoder ended too early");
}

TEST_F(HostileDecoder, MayTalkNonsenseAndIsNotBelieved) {
    EXPECT_THAT(FromFile("babble"), HasSubstr("the decoder talks nonsense"));
}

TEST_F(HostileDecoder, MayTalkForEverAndIsReadForAsLongAsAnyoneListens) {
    const auto reader = RecordingReader::Open(File("flood"), Hostile());
    std::vector<float> samples(4096);
    const std::array<float*, 1> inputs = {samples.data()};
    for (int block = 0; block < 1000; ++block) {
        ASSERT_GT(reader->Read(inputs, samples.size()), 0U);
        ASSERT_EQ(samples.front(), 0.5F);
    }
}

TEST_F(HostileDecoder, GetsOnlySoMuchMemory) {
    NEEDS(kMemory);
    EXPECT_EQ(FromFile("eat"), "no memory");
    EXPECT_EQ(FromUrl("eat"), "no memory");
}

TEST_F(HostileDecoder, MakesNoProcesses) {
    NEEDS(kSystemCalls);
    EXPECT_THAT(FromFile("fork"), HasSubstr(kNoRight));
    EXPECT_THAT(FromUrl("fork"), HasSubstr(kNoRight));
}

TEST_F(HostileDecoder, RunsNoPrograms) {
    NEEDS(kSystemCalls);
    EXPECT_THAT(FromFile("execute"), HasSubstr(kNoRight));
    EXPECT_THAT(FromUrl("execute"), HasSubstr(kNoRight));
    EXPECT_EQ(FromFile("run-written"), kNotPermitted);
}

TEST_F(HostileDecoder, TouchesNoOtherProcess) {
    NEEDS(kSystemCalls);
    EXPECT_THAT(FromFile("kill"), HasSubstr(kNoRight));
    EXPECT_THAT(FromUrl("kill"), HasSubstr(kNoRight));
    EXPECT_THAT(FromFile("trace"), HasSubstr(kNoRight));
}

TEST_F(HostileDecoder, ReachesNoNetworkFromAFile) {
    NEEDS(kSystemCalls);
    EXPECT_THAT(FromFile("connect"), HasSubstr(kNoRight));
    EXPECT_EQ(FromUrl("connect"), "Connection refused");  // by the one at the other end
}

TEST_F(HostileDecoder, OpensNoFile) {
    NEEDS(kFiles);
    EXPECT_THAT(FromFile("read"), AnyOf(kDenied, kNotPermitted));
    EXPECT_EQ(FromUrl("read"), "done");  // names of hosts and certificates lie beside it
    EXPECT_EQ(FromUrl("read-ours"), kDenied);
}

TEST_F(HostileDecoder, ChangesNoFile) {
    NEEDS(kFiles);
    NEEDS(kSystemCalls);
    for (const char* const word : {"write", "remove", "permit", "grow"}) {
        EXPECT_THAT(FromFile(word), AnyOf(kDenied, kNotPermitted)) << word;
        EXPECT_THAT(FromUrl(word), AnyOf(kDenied, kNotPermitted)) << word;
    }
    EXPECT_FALSE(std::filesystem::exists("/tmp/lineup-was-here"));
}

TEST_F(HostileDecoder, RaisesNoLimit) {
    NEEDS(kSystemCalls);
    EXPECT_EQ(FromFile("raise-a-limit"), kNotPermitted);
}

TEST_F(HostileDecoder, MayPrintAndIsNotHeard) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer reports on standard error";
#endif
    const std::filesystem::path printed = Folder() / "printed";
    const int before = dup(STDERR_FILENO);
    const int file = open(printed.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(dup2(file, STDERR_FILENO), 0);
    const std::string outcome = FromUrl("print");
    dup2(before, STDERR_FILENO);
    close(before);
    close(file);
    EXPECT_EQ(outcome, "done");
    EXPECT_EQ(std::filesystem::file_size(printed), 0U);
}

TEST_F(HostileDecoder, MayHaveThreads) {
    EXPECT_EQ(FromFile("thread"), "done");
    EXPECT_EQ(FromUrl("thread"), "done");
}

TEST_F(HostileDecoder, LeavesNoProcessBehind) {
    for (const char* const word : {"crash", "leave", "babble", "eat"}) {
        static_cast<void>(FromFile(word));
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(HostileDecoder, IsEndedWhereTheCallerIgnoresItsChildren) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(FromFile("crash"), "the decoder ended too early");
    EXPECT_THAT(FromFile("babble"), HasSubstr("the decoder talks nonsense"));
    std::signal(SIGCHLD, before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(HostileDecoder, StopsWhenItIsCancelled) {
    int asked = 0;
    const auto askThrice = [&asked] { return ++asked < 3; };
    EXPECT_THROW(static_cast<void>(RecordingReader::Open(File("wait"), Hostile(), askThrice)), lineup::Cancelled);
    EXPECT_EQ(asked, 3);
}

TEST_F(HostileDecoder, IsNotMistakenForARecordingWhereItIsMissing) {
    DecoderSettings settings;
    settings.program = Folder() / "missing";
    try {
        static_cast<void>(RecordingReader::Open(File("thread"), settings));
        FAIL();
    } catch (const Unreadable&) {
        FAIL() << "the recording is not to blame";
    } catch (const lineup::Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("cannot start"));
    }
}

}  // namespace
