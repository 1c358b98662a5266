#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace test {

/// A piece of a file that a load command names.
struct FilePart {
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
};

struct MachOSection {
    std::string name;
    std::uint64_t address = 0;
    std::uint64_t size = 0;
};

/// A stretch of memory and the bytes of the file that it begins with; zeros follow.
struct MachOSegment {
    std::string name;
    std::uint64_t address = 0;
    std::uint64_t size = 0;
    FilePart contents;
    int protection = 0;  ///< PROT_READ and the others, which have the same values
    std::vector<MachOSection> sections;
};

/// A macOS bundle for x86-64, or that part of one for several processors, taken apart by its load commands. It has the
/// form that bundles for macOS 10.13 have: what is to be rebased, bound and exported is said in opcodes.
class MachOFile {
public:
    /// Reads the file. Throws std::runtime_error with a sentence when it is another kind of file or breaks off.
    explicit MachOFile(const std::filesystem::path& file);

    [[nodiscard]] const std::vector<MachOSegment>& Segments() const { return mSegments; }

    /// The libraries it loads, by their paths on a Mac, in the order that symbols count them in, from 1.
    [[nodiscard]] const std::vector<std::string>& Libraries() const { return mLibraries; }

    /// The section of that name, or null.
    [[nodiscard]] const MachOSection* FindSection(const std::string& name) const;

    /// Throws std::runtime_error when the file is shorter.
    [[nodiscard]] std::span<const std::uint8_t> Bytes(const FilePart& part) const;

    FilePart rebases;
    FilePart binds;
    FilePart weakBinds;
    FilePart lazyBinds;
    FilePart exports;

private:
    void KeepSlice();
    void ReadCommand(std::uint32_t command, std::size_t offset, std::uint32_t size);
    void ReadSegment(std::size_t offset);

    template <class T>
    [[nodiscard]] T Read(std::size_t offset) const;

    std::vector<std::uint8_t> mBytes;
    std::vector<MachOSegment> mSegments;
    std::vector<std::string> mLibraries;
};

}  // namespace test
