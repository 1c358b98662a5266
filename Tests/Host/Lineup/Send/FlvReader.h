#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// Reads FLV as a receiver would, with nothing of what makes it.
namespace test {

struct ReceivedTag {
    int kind = 0;         ///< 8: sound, 9: picture, 18: facts
    std::int64_t ms = 0;  ///< 32 bits
    std::vector<std::uint8_t> content;

    [[nodiscard]] bool IsEntry() const { return kind == 9 && content.at(0) == 0x17; }
    [[nodiscard]] bool IsConfig() const { return kind == 18 || content.at(1) == 0; }
};

struct ReceivedFlv {
    std::vector<std::string> errors;
    std::vector<ReceivedTag> tags;  ///< those that are whole

    /// Those of one kind, without what is said once.
    [[nodiscard]] std::vector<ReceivedTag> Media(int kind) const;
};

/// `hasHead`: the bytes begin with that of a file.
ReceivedFlv ReadFlv(std::span<const std::uint8_t> bytes, bool hasHead = true);

}  // namespace test
