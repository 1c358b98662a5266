#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace test {

/// Writes answers one after the other: the length of the question, the question, the length of the answer, the
/// answer; lengths are 64-bit numbers. AnswerReader reads them.
class AnswerWriter {
public:
    explicit AnswerWriter(std::FILE* file) : mFile(file) {}

    /// Throws std::runtime_error when they cannot be written.
    void Add(std::string_view question, const void* answer, std::size_t bytes) {
        Put(question.data(), question.size());
        Put(answer, bytes);
    }
    void Add(std::string_view question, std::string_view answer) { Add(question, answer.data(), answer.size()); }

private:
    void Put(const void* bytes, std::uint64_t size) {
        const bool written =
            std::fwrite(&size, sizeof size, 1, mFile) == 1 && std::fwrite(bytes, 1, size, mFile) == size;
        if (!written) {
            throw std::runtime_error("an answer cannot be written");
        }
    }

    std::FILE* mFile;
};

}  // namespace test
