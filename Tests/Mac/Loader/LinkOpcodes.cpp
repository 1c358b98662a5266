#include "Tests/Mac/Loader/LinkOpcodes.h"

#include "Tests/Mac/Loader/ByteReader.h"

#include <stdexcept>

namespace test {

namespace {

constexpr std::uint64_t kPointerBytes = 8;
constexpr std::uint8_t kPointerType = 1;

// An opcode's upper half says what to do, its lower half is a small number.
constexpr std::uint8_t kOpcodeMask = 0xF0;
constexpr std::uint8_t kNumberMask = 0x0F;

enum RebaseOpcode : std::uint8_t {
    kRebaseDone = 0x00,
    kRebaseSetType = 0x10,
    kRebaseSetPlace = 0x20,
    kRebaseAdvance = 0x30,
    kRebaseAdvancePointers = 0x40,
    kRebaseSome = 0x50,
    kRebaseMany = 0x60,
    kRebaseAndAdvance = 0x70,
    kRebaseManySkipping = 0x80,
};

enum BindOpcode : std::uint8_t {
    kBindDone = 0x00,
    kBindSetLibrary = 0x10,
    kBindSetLargeLibrary = 0x20,
    kBindSetSpecialLibrary = 0x30,
    kBindSetSymbol = 0x40,
    kBindSetType = 0x50,
    kBindSetAddend = 0x60,
    kBindSetPlace = 0x70,
    kBindAdvance = 0x80,
    kBindOne = 0x90,
    kBindAndAdvance = 0xA0,
    kBindAndAdvancePointers = 0xB0,
    kBindManySkipping = 0xC0,
};

void RequirePointers(std::uint8_t type) {
    if (type != kPointerType) {
        throw std::runtime_error("something else than a pointer is to be changed");
    }
}

}  // namespace

std::vector<Place> DecodeRebases(std::span<const std::uint8_t> opcodes) {
    std::vector<Place> rebases;
    Place place;
    const auto rebase = [&](std::uint64_t count, std::uint64_t skip) {
        for (std::uint64_t i = 0; i < count; ++i) {
            rebases.push_back(place);
            place.offset += kPointerBytes + skip;
        }
    };
    for (ByteReader reader(opcodes); !reader.AtEnd();) {
        const std::uint8_t byte = reader.Byte();
        const std::uint8_t number = byte & kNumberMask;
        switch (byte & kOpcodeMask) {
            case kRebaseDone:
                return rebases;
            case kRebaseSetType:
                RequirePointers(number);
                break;
            case kRebaseSetPlace:
                place = {number, reader.Unsigned()};
                break;
            case kRebaseAdvance:
                place.offset += reader.Unsigned();
                break;
            case kRebaseAdvancePointers:
                place.offset += number * kPointerBytes;
                break;
            case kRebaseSome:
                rebase(number, 0);
                break;
            case kRebaseMany:
                rebase(reader.Unsigned(), 0);
                break;
            case kRebaseAndAdvance:
                rebase(1, reader.Unsigned());
                break;
            case kRebaseManySkipping: {
                const std::uint64_t count = reader.Unsigned();
                rebase(count, reader.Unsigned());
                break;
            }
            default:
                throw std::runtime_error("the rebases have an unknown opcode");
        }
    }
    return rebases;
}

std::vector<Bind> DecodeBinds(std::span<const std::uint8_t> opcodes, bool lazy) {
    std::vector<Bind> binds;
    Bind next;
    const auto bind = [&](std::uint64_t count, std::uint64_t skip) {
        for (std::uint64_t i = 0; i < count; ++i) {
            binds.push_back(next);
            next.place.offset += kPointerBytes + skip;
        }
    };
    for (ByteReader reader(opcodes); !reader.AtEnd();) {
        const std::uint8_t byte = reader.Byte();
        const std::uint8_t number = byte & kNumberMask;
        switch (byte & kOpcodeMask) {
            case kBindDone:
                if (!lazy) {
                    return binds;
                }
                break;
            case kBindSetLibrary:
                next.library = number;
                break;
            case kBindSetLargeLibrary:
                next.library = static_cast<int>(reader.Unsigned());
                break;
            case kBindSetSpecialLibrary:  // a negative number of four bits
                next.library = number == 0 ? 0 : number - 16;
                break;
            case kBindSetSymbol:
                next.symbol = reader.Name();
                break;
            case kBindSetType:
                RequirePointers(number);
                break;
            case kBindSetAddend:
                next.addend = reader.Signed();
                break;
            case kBindSetPlace:
                next.place = {number, reader.Unsigned()};
                break;
            case kBindAdvance:
                next.place.offset += reader.Unsigned();
                break;
            case kBindOne:
                bind(1, 0);
                break;
            case kBindAndAdvance:
                bind(1, reader.Unsigned());
                break;
            case kBindAndAdvancePointers:
                bind(1, number * kPointerBytes);
                break;
            case kBindManySkipping: {
                const std::uint64_t count = reader.Unsigned();
                bind(count, reader.Unsigned());
                break;
            }
            default:
                throw std::runtime_error("the binds have an unknown opcode");
        }
    }
    return binds;
}

// A node holds what is said of the symbol that ends there, and its children by the text that leads on.
std::optional<std::uint64_t> FindExport(std::span<const std::uint8_t> trie, std::string_view symbol) {
    std::uint64_t node = 0;
    for (;;) {
        if (node >= trie.size()) {
            return std::nullopt;
        }
        ByteReader reader(trie.subspan(node));
        const std::uint64_t ownBytes = reader.Unsigned();
        if (symbol.empty()) {
            if (ownBytes == 0) {
                return std::nullopt;
            }
            if (reader.Unsigned() != 0) {
                throw std::runtime_error("an export is no ordinary one");
            }
            return reader.Unsigned();
        }
        for (std::uint64_t i = 0; i < ownBytes; ++i) {
            reader.Byte();
        }
        bool found = false;
        for (unsigned children = reader.Byte(); children > 0 && !found; --children) {
            const std::string text = reader.Name();
            const std::uint64_t child = reader.Unsigned();
            if (symbol.starts_with(text)) {
                symbol.remove_prefix(text.size());
                node = child;
                found = true;
            }
        }
        if (!found) {
            return std::nullopt;
        }
    }
}

}  // namespace test
