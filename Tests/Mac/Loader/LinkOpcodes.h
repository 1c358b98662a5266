#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a Mach-O file's opcodes say is to be done to it in memory. The functions throw std::runtime_error with a
/// sentence for opcodes that bundles of this form do not have.
namespace test {

/// A pointer in memory: `offset` bytes into the segment with that index.
struct Place {
    std::size_t segment = 0;
    std::uint64_t offset = 0;
};

/// The pointers that hold addresses as if the file lay at 0.
std::vector<Place> DecodeRebases(std::span<const std::uint8_t> opcodes);

/// Where a symbol is looked for, beside the libraries' numbers from 1.
inline constexpr int kInTheProcess = -2;

/// A pointer that is to hold a symbol's address.
struct Bind {
    Place place;
    int library = 0;     ///< a library's number, or kInTheProcess
    std::string symbol;  ///< with the underscore in front
    std::int64_t addend = 0;
};

/// `lazy` opcodes end after each symbol and go on.
std::vector<Bind> DecodeBinds(std::span<const std::uint8_t> opcodes, bool lazy);

/// The address of an exported symbol, counted from the file's first byte in memory; nothing when it is not exported.
std::optional<std::uint64_t> FindExport(std::span<const std::uint8_t> trie, std::string_view symbol);

}  // namespace test
