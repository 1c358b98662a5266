#include "Tests/Support/ChildProgram.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

namespace {

constexpr int kNotPrepared = 126;
constexpr int kNotStarted = 127;

struct Pipe {
    Pipe() {
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("cannot make a pipe");
        }
    }
    [[nodiscard]] int Reading() const { return ends[0]; }
    [[nodiscard]] int Writing() const { return ends[1]; }

    std::array<int, 2> ends{};
};

// Reads to the end of a pipe and closes it.
std::string Contents(int reading) {
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = read(reading, buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(reading);
    return text;
}

// As from a terminal. A shell that runs the tests in the background has INT and QUIT ignored, which a program inherits.
void TakeSignals() {
    for (const int ending : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM}) {
        std::signal(ending, SIG_DFL);
    }
}

[[noreturn]] void Become(std::vector<char*>& arguments, const std::filesystem::path& folder,
                         const ChildProgram::Preparation& preparation) {
    TakeSignals();
    if (chdir(folder.c_str()) != 0 || (preparation && !preparation())) {
        _exit(kNotPrepared);
    }
    execv(arguments.front(), arguments.data());
    _exit(kNotStarted);
}

}  // namespace

ChildProgram::ChildProgram(const std::vector<std::string>& command, const std::filesystem::path& folder,
                           const Preparation& preparation) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const Pipe out;
    const Pipe err;
    mId = fork();
    if (mId < 0) {
        throw std::runtime_error("cannot run " + command.front());
    }
    if (mId == 0) {
        dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
        dup2(out.Writing(), STDOUT_FILENO);
        dup2(err.Writing(), STDERR_FILENO);
        Become(arguments, folder, preparation);
    }
    close(out.Writing());
    close(err.Writing());
    mOut = out.Reading();
    mErr = err.Reading();
}

ChildProgram::~ChildProgram() {
    if (mId > 0) {
        kill(mId, SIGKILL);
        waitpid(mId, nullptr, 0);
        close(mOut);
        close(mErr);
    }
}

void ChildProgram::Send(int signal) const {
    kill(mId, signal);
}

bool ChildProgram::IsRunning() const {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(mId), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == 0;
}

Ending ChildProgram::Wait() {
    Ending ending;
    ending.out = Contents(mOut);
    ending.err = Contents(mErr);
    int status = 0;
    waitpid(mId, &status, 0);
    mId = -1;
    ending.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ending.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return ending;
}

Ending RunChild(const std::vector<std::string>& command, const std::filesystem::path& folder,
                const ChildProgram::Preparation& preparation) {
    return ChildProgram(command, folder, preparation).Wait();
}

}  // namespace test
