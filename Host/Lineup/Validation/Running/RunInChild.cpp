#include <lineup/Error.h>
#include <lineup/Validation.h>
#include "Host/Lineup/Validation/Examination/RequestBoard.h"
#include "Host/Lineup/Validation/Running/ChildReport.h"

#include <fmt/format.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#if defined(LINEUP_COUNTS_COVERAGE)
extern "C" int __llvm_profile_write_file();
#endif

namespace lineup::validation {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void FailTo(const char* act, int error) {
    throw Error(fmt::format("cannot {}: {}", act, std::generic_category().message(error)));
}

class Pipe {
public:
    Pipe() {
        if (pipe2(mEnds.data(), O_CLOEXEC) != 0) {
            FailTo("make a pipe", errno);
        }
    }
    ~Pipe() {
        CloseWriteEnd();
        close(mEnds[0]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    [[nodiscard]] int WriteEnd() const noexcept { return mEnds[1]; }

    void CloseWriteEnd() noexcept {
        if (mEnds[1] >= 0) {
            close(mEnds[1]);
            mEnds[1] = -1;
        }
    }

    /// What has been written so far; never waits, for the other end may be in anyone's hands.
    [[nodiscard]] std::string ReadAll() const {
        fcntl(mEnds[0], F_SETFL, O_NONBLOCK);
        std::string bytes;
        std::array<char, 4096> buffer{};
        for (ssize_t count = 0; (count = read(mEnds[0], buffer.data(), buffer.size())) > 0;) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return bytes;
    }

private:
    std::array<int, 2> mEnds = {-1, -1};
};

/// A request board in memory that a child gets as a descriptor.
class SharedBoard {
public:
    SharedBoard() : mDescriptor(MakeFile()) {
        void* const memory = mmap(nullptr, sizeof(RequestBoard), PROT_READ | PROT_WRITE, MAP_SHARED, mDescriptor, 0);
        if (memory == MAP_FAILED) {
            const int error = errno;
            close(mDescriptor);
            FailTo("map memory", error);
        }
        mBoard = static_cast<RequestBoard*>(memory);
    }
    ~SharedBoard() {
        munmap(mBoard, sizeof(RequestBoard));
        close(mDescriptor);
    }
    SharedBoard(const SharedBoard&) = delete;
    SharedBoard& operator=(const SharedBoard&) = delete;

    [[nodiscard]] int Descriptor() const noexcept { return mDescriptor; }
    [[nodiscard]] const RequestBoard& Board() const noexcept { return *mBoard; }

private:
    // All zeros, above the descriptors that a child gets.
    static int MakeFile() {
        const int low = memfd_create("request board", MFD_CLOEXEC);
        const int file = low >= 0 ? fcntl(low, F_DUPFD_CLOEXEC, kBoardDescriptor + 1) : -1;
        const int error = errno;
        close(low);
        if (file < 0 || ftruncate(file, sizeof(RequestBoard)) != 0) {
            FailTo("make memory for a child", file < 0 ? error : errno);
        }
        return file;
    }

    int mDescriptor;
    RequestBoard* mBoard = nullptr;
};

/// Keeps SIGCHLD waiting while it lives, so that sigtimedwait sees it.
class ChildSignal {
public:
    ChildSignal() {
        std::signal(SIGCHLD, SIG_DFL);  // ignored, children would go without a trace
        sigemptyset(&mSet);
        sigaddset(&mSet, SIGCHLD);
        pthread_sigmask(SIG_BLOCK, &mSet, &mBefore);
    }
    ~ChildSignal() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
    ChildSignal(const ChildSignal&) = delete;
    ChildSignal& operator=(const ChildSignal&) = delete;

    [[nodiscard]] const sigset_t& Before() const noexcept { return mBefore; }

    /// Waits for the signal, no longer than `time`.
    void Wait(Clock::duration time) const {
        const auto nanoseconds = std::chrono::nanoseconds(time).count();
        constexpr std::int64_t kSecond = 1000000000;
        const timespec limit{.tv_sec = nanoseconds / kSecond, .tv_nsec = nanoseconds % kSecond};
        sigtimedwait(&mSet, nullptr, &limit);
    }

private:
    sigset_t mSet{};
    sigset_t mBefore{};
};

// What a child starts with: nothing to read, standard output on standard error, the pipe as its descriptor.
class SpawnSetup {
public:
    SpawnSetup(const Pipe& report, const SharedBoard& board, const sigset_t& mask) {
        posix_spawn_file_actions_init(&mFiles);
        posix_spawn_file_actions_addopen(&mFiles, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&mFiles, STDERR_FILENO, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&mFiles, report.WriteEnd(), kReportDescriptor);
        posix_spawn_file_actions_adddup2(&mFiles, board.Descriptor(), kBoardDescriptor);
        posix_spawnattr_init(&mAttributes);
        posix_spawnattr_setsigmask(&mAttributes, &mask);
        posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnSetup() {
        posix_spawn_file_actions_destroy(&mFiles);
        posix_spawnattr_destroy(&mAttributes);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    [[nodiscard]] pid_t Start(const std::vector<std::string>& arguments) const {
        std::vector<char*> pointers;
        pointers.reserve(arguments.size() + 1);
        for (const std::string& argument : arguments) {
            pointers.push_back(const_cast<char*>(argument.c_str()));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
        }
        pointers.push_back(nullptr);
        pid_t child = 0;
        const int error = posix_spawn(&child, pointers.front(), &mFiles, &mAttributes, pointers.data(), environ);
        if (error != 0) {
            FailTo("start a process for a check", error);
        }
        return child;
    }

private:
    posix_spawn_file_actions_t mFiles{};
    posix_spawnattr_t mAttributes{};
};

// The status a child ended with, or nothing when it had to be ended.
std::optional<int> WaitFor(pid_t child, const ChildSignal& childSignal, std::chrono::milliseconds timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    int status = 0;
    while (true) {
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child) {
            return status;
        }
        if (ended < 0) {
            FailTo("wait for the process of a check", errno);
        }
        const Clock::duration left = deadline - Clock::now();
        if (left <= Clock::duration::zero()) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return std::nullopt;
        }
        childSignal.Wait(left);
    }
}

// What the process was doing, as a finding's text goes on: ", in selector 25, ...", ", while loading ..."
std::string DoingWhat(const std::vector<PendingRequest>& pending) {
    std::string text;
    for (const PendingRequest& request : pending) {
        text += fmt::format("{} {} {}", text.empty() ? "," : "; or", request.selector ? "in" : "while", request.text);
    }
    return text;
}

// What the process came to, and what it was doing then.
Finding Ended(Outcome outcome, const std::string& text, const RequestBoard& board) {
    Finding finding{.outcome = outcome, .pending = board.Pending()};
    finding.text = text + DoingWhat(finding.pending);
    return finding;
}

Finding Judge(int status, const std::string& report, const RequestBoard& board) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        const char* const name = sigabbrev_np(signal);
        return Ended(Outcome::Crashed,
                     fmt::format("the process was ended by SIG{} ({})", name != nullptr ? name : "?",
                                 sigdescr_np(signal) != nullptr ? sigdescr_np(signal) : "unknown"),
                     board);
    }
    const std::optional<Finding> finding = Decode(report);
    if (!finding || WEXITSTATUS(status) != EXIT_SUCCESS) {
        return Ended(Outcome::Crashed,
                     fmt::format("the process ended with exit code {} {}", WEXITSTATUS(status),
                                 finding ? "after the check" : "before the check did"),
                     board);
    }
    return *finding;
}

}  // namespace

Finding RunInChild(const std::vector<std::string>& arguments, std::chrono::milliseconds timeout) {
    Pipe report;
    const SharedBoard board;
    const ChildSignal childSignal;
    const pid_t child = SpawnSetup(report, board, childSignal.Before()).Start(arguments);
    report.CloseWriteEnd();
    const std::optional<int> status = WaitFor(child, childSignal, timeout);
    if (!status) {
        const double seconds = std::chrono::duration<double>(timeout).count();
        return Ended(Outcome::TimedOut, fmt::format("the check did not end within {} s", seconds), board.Board());
    }
    return Judge(*status, report.ReadAll(), board.Board());
}

namespace {

// Null without one: a person may run the program of a check by hand.
RequestBoard* FindBoard() {
    struct stat file {};
    if (fstat(kBoardDescriptor, &file) != 0 || file.st_size != sizeof(RequestBoard)) {
        return nullptr;
    }
    void* const memory = mmap(nullptr, sizeof(RequestBoard), PROT_READ | PROT_WRITE, MAP_SHARED, kBoardDescriptor, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<RequestBoard*>(memory);
}

}  // namespace

void PrepareChild() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit none{.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &none);
    WriteTo(FindBoard());
}

void ReportToParent(const Finding& finding) {
    const std::string bytes = Encode(finding);
    const ssize_t written = write(kReportDescriptor, bytes.data(), bytes.size());
    const bool whole = written == static_cast<ssize_t>(bytes.size());
#if defined(LINEUP_COUNTS_COVERAGE)
    __llvm_profile_write_file();  // which otherwise is done on a usual exit
#endif
    _exit(whole ? EXIT_SUCCESS : EXIT_FAILURE);
}

}  // namespace lineup::validation
