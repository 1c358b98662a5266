#include "Tests/Mac/Loader/MachOFile.h"

#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test {

namespace {

// The records of the file, as far as they are read.

struct Header {
    std::uint32_t magic;
    std::uint32_t processor;
    std::uint32_t processorKind;
    std::uint32_t fileType;
    std::uint32_t commandCount;
    std::uint32_t commandBytes;
    std::uint32_t flags;
    std::uint32_t reserved;
};
constexpr std::uint32_t kMagic64 = 0xFEEDFACF;
constexpr std::uint32_t kProcessorX86_64 = 0x01000007;
constexpr std::uint32_t kFileTypeBundle = 8;

// A file for several processors begins with a list of its parts, highest byte first.
constexpr std::uint32_t kMagicOfSeveral = 0xBEBAFECA;
struct SeveralHeader {
    std::uint32_t magic;
    std::uint32_t count;
};
struct Slice {
    std::uint32_t processor;
    std::uint32_t processorKind;
    std::uint32_t offset;
    std::uint32_t size;
    std::uint32_t alignment;
};

struct Command {
    std::uint32_t kind;
    std::uint32_t size;
};

constexpr std::size_t kNameBytes = 16;
using Name = std::array<char, kNameBytes>;

constexpr std::uint32_t kCommandSegment = 0x19;
struct SegmentCommand {
    Command command;
    Name name;
    std::uint64_t address;
    std::uint64_t size;
    std::uint64_t fileOffset;
    std::uint64_t fileSize;
    std::int32_t mostProtection;
    std::int32_t protection;
    std::uint32_t sectionCount;
    std::uint32_t flags;
};
struct SectionRecord {
    Name section;
    Name segment;
    std::uint64_t address;
    std::uint64_t size;
    std::array<std::uint32_t, 8> rest;
};

constexpr std::uint32_t kCommandLoadLibrary = 0xC;
struct LibraryCommand {
    Command command;
    std::uint32_t nameOffset;
    std::array<std::uint32_t, 3> versions;
};

constexpr std::uint32_t kCommandDyldInfo = 0x80000022;
struct DyldInfoCommand {
    Command command;
    FilePart rebases;
    FilePart binds;
    FilePart weakBinds;
    FilePart lazyBinds;
    FilePart exports;
};

// Commands that a loader has to follow say so, lest it passes over one that it does not know.
constexpr std::uint32_t kMustBeUnderstood = 0x80000000;

std::string Text(const Name& name) {
    return {name.data(), strnlen(name.data(), name.size())};
}

}  // namespace

template <class T>
T MachOFile::Read(std::size_t offset) const {
    T record;
    if (offset > mBytes.size() || mBytes.size() - offset < sizeof record) {
        throw std::runtime_error("the file breaks off");
    }
    std::memcpy(&record, mBytes.data() + offset, sizeof record);
    return record;
}

void MachOFile::KeepSlice() {
    const auto header = Read<SeveralHeader>(0);
    if (header.magic != kMagicOfSeveral) {
        return;
    }
    for (std::uint32_t i = 0; i < __builtin_bswap32(header.count); ++i) {
        const auto slice = Read<Slice>(sizeof header + i * sizeof(Slice));
        if (__builtin_bswap32(slice.processor) == kProcessorX86_64) {
            const auto bytes = Bytes({__builtin_bswap32(slice.offset), __builtin_bswap32(slice.size)});
            mBytes = std::vector(bytes.begin(), bytes.end());
            return;
        }
    }
}

MachOFile::MachOFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    mBytes.assign(std::istreambuf_iterator<char>(stream), {});
    KeepSlice();
    const auto header = Read<Header>(0);
    if (header.magic != kMagic64 || header.processor != kProcessorX86_64 || header.fileType != kFileTypeBundle) {
        throw std::runtime_error("the file is no macOS bundle for x86-64");
    }
    std::size_t offset = sizeof header;
    for (std::uint32_t i = 0; i < header.commandCount; ++i) {
        const auto command = Read<Command>(offset);
        ReadCommand(command.kind, offset, command.size);
        offset += command.size;
    }
}

void MachOFile::ReadCommand(std::uint32_t command, std::size_t offset, std::uint32_t size) {
    if (command == kCommandSegment) {
        ReadSegment(offset);
    } else if (command == kCommandLoadLibrary) {
        const auto library = Read<LibraryCommand>(offset);
        if (library.nameOffset > size) {
            throw std::runtime_error("a library has no name");
        }
        const auto name = Bytes({static_cast<std::uint32_t>(offset) + library.nameOffset, size - library.nameOffset});
        const auto* const text = reinterpret_cast<const char*>(name.data());
        mLibraries.emplace_back(text, strnlen(text, name.size()));
    } else if (command == kCommandDyldInfo) {
        const auto info = Read<DyldInfoCommand>(offset);
        rebases = info.rebases;
        binds = info.binds;
        weakBinds = info.weakBinds;
        lazyBinds = info.lazyBinds;
        exports = info.exports;
    } else if ((command & kMustBeUnderstood) != 0) {
        throw std::runtime_error("the file has a load command of a later form");
    }
}

void MachOFile::ReadSegment(std::size_t offset) {
    const auto segment = Read<SegmentCommand>(offset);
    MachOSegment read{
        .name = Text(segment.name),
        .address = segment.address,
        .size = segment.size,
        .contents = {static_cast<std::uint32_t>(segment.fileOffset), static_cast<std::uint32_t>(segment.fileSize)},
        .protection = segment.protection,
        .sections = {}};
    for (std::uint32_t i = 0; i < segment.sectionCount; ++i) {
        const auto section = Read<SectionRecord>(offset + sizeof segment + i * sizeof(SectionRecord));
        read.sections.push_back({Text(section.section), section.address, section.size});
    }
    mSegments.push_back(std::move(read));
}

const MachOSection* MachOFile::FindSection(const std::string& name) const {
    for (const MachOSegment& segment : mSegments) {
        for (const MachOSection& section : segment.sections) {
            if (section.name == name) {
                return &section;
            }
        }
    }
    return nullptr;
}

std::span<const std::uint8_t> MachOFile::Bytes(const FilePart& part) const {
    if (part.offset > mBytes.size() || mBytes.size() - part.offset < part.size) {
        throw std::runtime_error("the file breaks off");
    }
    return std::span(mBytes).subspan(part.offset, part.size);
}

}  // namespace test
