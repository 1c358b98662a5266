#include "Host/Lineup/Validation/Interface/ExportedSymbols.h"

#include "Host/Lineup/Validation/Examination/Examination.h"

#include <cstring>
#include <elf.h>
#include <fstream>
#include <iterator>

namespace lineup::validation {

namespace {

// A file's bytes; whatever is read of them lies within.
class FileBytes {
public:
    explicit FileBytes(const std::filesystem::path& file) : mFile(file) {
        std::ifstream stream(file, std::ios::binary);
        mBytes.assign(std::istreambuf_iterator<char>(stream), {});
    }

    template <class T>
    [[nodiscard]] T Read(std::uint64_t offset) const {
        RequireRange(offset, sizeof(T));
        T value{};
        std::memcpy(&value, mBytes.data() + offset, sizeof value);
        return value;
    }

    // The text from `offset` up to the next zero byte.
    [[nodiscard]] std::string ReadText(std::uint64_t offset) const {
        RequireRange(offset, 1);
        const std::size_t end = mBytes.find('\0', offset);
        return mBytes.substr(offset, end == std::string::npos ? end : end - offset);
    }

private:
    void RequireRange(std::uint64_t offset, std::uint64_t size) const {
        Require(offset <= mBytes.size() && size <= mBytes.size() - offset, "{} is cut short", mFile.string());
    }

    std::filesystem::path mFile;
    std::string mBytes;
};

bool IsOffered(const Elf64_Sym& symbol) {
    const unsigned binding = ELF64_ST_BIND(symbol.st_info);
    const unsigned visibility = ELF64_ST_VISIBILITY(symbol.st_other);
    return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL &&
           (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

}  // namespace

std::vector<std::string> ExportedSymbols(const std::filesystem::path& file) {
    const FileBytes bytes(file);
    const auto header = bytes.Read<Elf64_Ehdr>(0);
    Require(std::memcmp(&header, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == ELFCLASS64,
            "{} is not a 64-bit ELF file", file.string());
    const auto section = [&](std::uint64_t index) {
        return bytes.Read<Elf64_Shdr>(header.e_shoff + index * sizeof(Elf64_Shdr));
    };

    std::vector<std::string> names;
    for (std::uint64_t s = 0; s < header.e_shnum; ++s) {
        const Elf64_Shdr table = section(s);
        if (table.sh_type != SHT_DYNSYM) {
            continue;
        }
        const std::uint64_t texts = section(table.sh_link).sh_offset;
        for (std::uint64_t offset = 0; offset + sizeof(Elf64_Sym) <= table.sh_size; offset += sizeof(Elf64_Sym)) {
            const auto symbol = bytes.Read<Elf64_Sym>(table.sh_offset + offset);
            if (IsOffered(symbol)) {
                names.push_back(bytes.ReadText(texts + symbol.st_name));
            }
        }
    }
    return names;
}

}  // namespace lineup::validation
