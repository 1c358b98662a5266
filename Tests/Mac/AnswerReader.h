#pragma once

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace test {

/// Runs a program and reads the answers that it writes, in the form of AnswerWriter.
class AnswerReader {
public:
    /// A command line of the shell.
    explicit AnswerReader(const std::string& command) : mPipe(popen(command.c_str(), "r")) {
        if (mPipe == nullptr) {
            throw std::runtime_error("cannot run " + command);
        }
    }
    ~AnswerReader() {
        if (mPipe != nullptr) {
            pclose(mPipe);
        }
    }
    AnswerReader(const AnswerReader&) = delete;
    AnswerReader& operator=(const AnswerReader&) = delete;

    std::string question;              ///< the last one that was read
    std::vector<std::uint8_t> answer;  ///< and what was answered

    /// Reads the next one; false at the end.
    bool Next() {
        std::vector<std::uint8_t> text;
        if (!Get(text) || !Get(answer)) {
            return false;
        }
        question.assign(text.begin(), text.end());
        return true;
    }

    /// Waits for the program and gives its exit code; -1 when a signal ended it.
    int Close() {
        const int status = pclose(mPipe);
        mPipe = nullptr;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    bool Get(std::vector<std::uint8_t>& bytes) {
        std::uint64_t size = 0;
        if (std::fread(&size, sizeof size, 1, mPipe) != 1) {
            return false;
        }
        bytes.resize(size);
        return std::fread(bytes.data(), 1, size, mPipe) == size;
    }

    std::FILE* mPipe;
};

}  // namespace test
