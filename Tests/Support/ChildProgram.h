#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace test {

/// How a program ended and what it printed. `exitCode` is -1 when a signal ended it, `signal` is 0 when none did.
struct Ending {
    int exitCode = -1;
    int signal = 0;
    std::string out;
    std::string err;
};

/// A program that runs beside the test, without a shell in between, so that it can be sent signals. What it
/// prints goes through pipes, which hold 64 KiB until Wait reads them.
class ChildProgram {
public:
    /// Runs in the child before the program is started: takes rights away, sets limits, closes streams.
    /// False ends the child with exit code 126.
    using Preparation = std::function<bool()>;

    /// Starts `command` (a path and its arguments) in `folder`, with nothing on standard input. Throws
    /// std::runtime_error when no process can be made.
    ChildProgram(const std::vector<std::string>& command, const std::filesystem::path& folder,
                 const Preparation& preparation = {});
    /// Kills the program when it is still running.
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    void Send(int signal) const;

    /// True while it has neither ended nor been waited for.
    [[nodiscard]] bool IsRunning() const;

    /// Reads what it prints until it has ended. Call once.
    Ending Wait();

private:
    int mOut = -1;
    int mErr = -1;
    pid_t mId = -1;
};

/// Starts a program and waits for it.
Ending RunChild(const std::vector<std::string>& command, const std::filesystem::path& folder,
                const ChildProgram::Preparation& preparation = {});

}  // namespace test
