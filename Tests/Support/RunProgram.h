#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/wait.h>

namespace test {

/// What a program printed and how it ended.
struct RunResult {
    int exitCode = -1;  ///< -1 when a signal ended it
    std::string out;
    std::string err;
};

inline std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs a command line of the shell, with nothing to read on standard input. Standard error is collected
/// in a file in `folder`.
inline RunResult RunProgram(const std::string& commandLine, const std::filesystem::path& folder) {
    const std::filesystem::path errors = folder / "stderr.txt";
    const std::string whole = commandLine + " </dev/null 2>'" + errors.string() + "'";
    FILE* const pipe = popen(whole.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + commandLine);
    }
    RunResult result;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        result.out.append(buffer.data(), count);
    }
    const int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.err = ReadFile(errors);
    return result;
}

}  // namespace test
