#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace test {

/// Builds message catalogues in the binary form of GNU gettext, sound ones and, with the words of the
/// header changed, broken ones.
class MessageCatalogue {
public:
    explicit MessageCatalogue(std::string description = "Content-Type: text/plain; charset=UTF-8\n") {
        mTexts[""] = std::move(description);
    }

    MessageCatalogue& Add(const std::string& key, const std::string& text) {
        mTexts[key] = text;
        return *this;
    }

    /// Gives the file hash cells, as the catalogue compiler does.
    MessageCatalogue& Hash() {
        mHashed = true;
        return *this;
    }

    /// The file: header, table of keys, table of texts, hash cells, then the strings.
    [[nodiscard]] std::string Bytes() const {
        const auto count = static_cast<std::uint32_t>(mTexts.size());
        const std::vector<std::uint32_t> cells = mHashed ? HashCells() : std::vector<std::uint32_t>();
        const std::uint32_t keys = 28;
        const std::uint32_t texts = keys + 8 * count;
        const std::uint32_t hash = texts + 8 * count;
        const auto numCells = static_cast<std::uint32_t>(cells.size());
        std::string keyTable;
        std::string textTable;
        std::string hashTable;
        std::string strings;
        const auto add = [&](std::string& table, const std::string& text) {
            AddWord(table, static_cast<std::uint32_t>(text.size()));
            AddWord(table, hash + 4 * numCells + static_cast<std::uint32_t>(strings.size()));
            strings += text + '\0';
        };
        for (const auto& [key, text] : mTexts) {
            add(keyTable, key);
            add(textTable, text);
        }
        for (const std::uint32_t cell : cells) {
            AddWord(hashTable, cell);
        }
        std::string file;
        for (const std::uint32_t word : {0x950412DEU, 0U, count, keys, texts, numCells, hash}) {
            AddWord(file, word);
        }
        return file + keyTable + textTable + hashTable + strings;
    }

    static void AddWord(std::string& bytes, std::uint32_t word) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<char>(word >> shift & 0xFFU));
        }
    }

private:
    // The hash of P. J. Weinberger, which the format prescribes.
    static std::uint32_t HashOf(const std::string& key) {
        std::uint32_t hash = 0;
        for (const char character : key) {
            hash = (hash << 4U) + static_cast<unsigned char>(character);
            const std::uint32_t top = hash & 0xF0000000U;
            hash = (hash ^ (top >> 24U)) & ~top;
        }
        return hash;
    }

    // Seven cells, a prime above 4/3 of the few texts of a test; a cell in use sends on by a step of its key's.
    [[nodiscard]] std::vector<std::uint32_t> HashCells() const {
        constexpr std::uint32_t kCells = 7;
        std::vector<std::uint32_t> cells(kCells);
        std::uint32_t number = 0;
        for (const auto& [key, text] : mTexts) {
            const std::uint32_t hash = HashOf(key);
            std::uint32_t cell = hash % kCells;
            while (cells.at(cell) != 0) {
                cell = (cell + 1 + hash % (kCells - 2)) % kCells;
            }
            cells[cell] = ++number;
        }
        return cells;
    }

    std::map<std::string, std::string> mTexts;
    bool mHashed = false;
};

/// `file` with the little-endian word at `offset` changed.
inline std::string WithWord(std::string file, std::size_t offset, std::uint32_t word) {
    std::string bytes;
    MessageCatalogue::AddWord(bytes, word);
    return file.replace(offset, bytes.size(), bytes);
}

}  // namespace test
