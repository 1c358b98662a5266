#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace test {

/// A program in a terminal of its own, as a person has it: a wide one, so that no line is broken.
class Terminal {
public:
    /// Starts a program. Throws std::runtime_error when there is no terminal to be had.
    explicit Terminal(const std::vector<std::string>& arguments);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// Types `keys`.
    void Type(const std::string& keys) const;

    /// Everything on the screen since the last call, up to the end of the first `text`. Throws
    /// std::runtime_error, with what there was instead, when that does not appear in time.
    std::string ReadUntil(const std::string& text, std::chrono::seconds limit = std::chrono::seconds(20));

private:
    int mScreen = -1;
    pid_t mProgram = -1;
    std::string mRead;
};

}  // namespace test
