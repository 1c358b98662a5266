#include "Host/Services/Text/CatalogueCheck.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zelcore {

namespace {

// The form: seven 32-bit words (magic number, revision, number of texts, offset of the table of keys, offset
// of the table of texts, number of hash cells, offset of the hash cells). A table holds a length and an
// offset for each text; texts end with a zero that the length does not count. A hash cell holds the
// number of a text, counted from 1, or 0.
constexpr std::uint32_t kMagic = 0x950412DE;
constexpr std::uint32_t kMagicOfOtherByteOrder = 0xDE120495;
constexpr std::size_t kWordBytes = 4;
constexpr std::size_t kCatalogueHeaderBytes = 7 * kWordBytes;
constexpr std::size_t kEntryBytes = 2 * kWordBytes;
constexpr std::uint32_t kFewestHashCells = 3;  // the step between cells is taken modulo two fewer

// The rule for plurals is an expression that readers parse by recursion; real ones are below 200 characters.
constexpr std::string_view kPluralRule = "plural=";
constexpr std::size_t kLongestPluralRule = 256;

class CatalogueFile {
public:
    explicit CatalogueFile(const std::vector<char>& file) : mFile(file.data(), file.size()) {}

    [[nodiscard]] bool IsSound() {
        if (mFile.size() < kCatalogueHeaderBytes) {
            return false;
        }
        mOtherByteOrder = Word(0) == kMagicOfOtherByteOrder;
        if (Word(0) != kMagic) {
            return false;
        }
        const std::uint32_t count = Word(2 * kWordBytes);
        return count > 0 && IsSoundTable(Word(3 * kWordBytes), count) && IsSoundTable(Word(4 * kWordBytes), count) &&
               IsSoundHash(Word(6 * kWordBytes), Word(5 * kWordBytes), count) &&
               IsSoundDescription(Word(3 * kWordBytes), Word(4 * kWordBytes));
    }

private:
    [[nodiscard]] std::uint32_t Word(std::size_t offset) const {
        std::uint32_t word = 0;
        std::memcpy(&word, mFile.data() + offset, sizeof word);
        return mOtherByteOrder ? __builtin_bswap32(word) : word;
    }

    // `count` pieces of `bytes` each from `offset` on lie inside the file.
    [[nodiscard]] bool Holds(std::size_t offset, std::size_t count, std::size_t bytes) const {
        return offset <= mFile.size() && count <= (mFile.size() - offset) / bytes;
    }

    [[nodiscard]] bool IsSoundTable(std::size_t table, std::size_t count) const {
        if (!Holds(table, count, kEntryBytes)) {
            return false;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t length = Word(table + i * kEntryBytes);
            const std::size_t offset = Word(table + i * kEntryBytes + kWordBytes);
            if (!Holds(offset, length + 1, 1) || mFile[offset + length] != '\0') {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] bool IsSoundHash(std::size_t cells, std::uint32_t numCells, std::uint32_t count) const {
        if (numCells == 0) {
            return true;
        }
        if (numCells < kFewestHashCells || !Holds(cells, numCells, kWordBytes)) {
            return false;
        }
        for (std::size_t i = 0; i < numCells; ++i) {
            if (Word(cells + i * kWordBytes) > count) {
                return false;
            }
        }
        return true;
    }

    // The text of the empty key describes the catalogue; it is the first.
    [[nodiscard]] bool IsSoundDescription(std::size_t keys, std::size_t texts) const {
        const std::string_view description = mFile.substr(Word(texts + kWordBytes), Word(texts));
        const auto rule = description.find(kPluralRule);
        const auto ruleEnd = rule == std::string_view::npos ? rule : description.find_first_of(";\r\n", rule);
        const bool shortRule =
            rule == std::string_view::npos || std::min(ruleEnd, description.size()) - rule <= kLongestPluralRule;
        return Word(keys) == 0 && shortRule;
    }

    std::string_view mFile;
    bool mOtherByteOrder = false;
};

}  // namespace

bool IsSoundCatalogue(const std::vector<char>& file) {
    return CatalogueFile(file).IsSound();
}

}  // namespace zelcore
