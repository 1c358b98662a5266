#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace lineup::validation {

/// Where a record lies, and what its bytes hold before anything is put there.
struct Placement {
    std::uint8_t filler = 0xCC;
    std::size_t misalignment = 0;  ///< bytes past a 16-byte boundary
};

/// Two fillers, since a write that repeats the filler cannot be seen; even and odd addresses, since
/// records are packed.
inline constexpr std::array<Placement, 4> kPlacements = {{{.filler = 0xCC, .misalignment = 0},
                                                          {.filler = 0x33, .misalignment = 0},
                                                          {.filler = 0xCC, .misalignment = 1},
                                                          {.filler = 0x33, .misalignment = 7}}};

/// Bytes [offset, offset + bytes) of a record.
struct Field {
    std::size_t offset = 0;
    std::size_t bytes = 0;
};

/// `size` bytes between guards. What the host puts there counts as their state before a request.
class GuardedBytes {
public:
    explicit GuardedBytes(std::size_t size, Placement placement = {});
    explicit GuardedBytes(std::span<const std::uint8_t> bytes, Placement placement = {});

    [[nodiscard]] void* Data() noexcept { return mMemory.data() + mStart; }
    [[nodiscard]] std::size_t Size() const noexcept { return mSize; }
    [[nodiscard]] std::span<const std::uint8_t> Bytes() const noexcept {
        return std::span(mMemory).subspan(mStart, mSize);
    }

    /// Puts bytes at `offset`, as the host does.
    void PutBytes(const void* bytes, std::size_t size, std::size_t offset = 0);

    /// Puts a value at `offset`, as the host does.
    template <class Value>
    GuardedBytes& Put(std::size_t offset, Value value) {
        PutBytes(&value, sizeof value, offset);
        return *this;
    }

    template <class Value>
    [[nodiscard]] Value Get(std::size_t offset) const {
        Value value;
        std::memcpy(&value, Bytes().subspan(offset).data(), sizeof value);
        return value;
    }

    /// Where a byte changed that is in none of `fields`, guards included, in words that go on after the
    /// record's name; empty when none did.
    [[nodiscard]] std::string ChangedOutside(std::initializer_list<Field> fields = {}) const;
    [[nodiscard]] bool IsUntouched() const { return ChangedOutside().empty(); }

private:
    std::size_t mStart;
    std::size_t mSize;
    std::vector<std::uint8_t> mMemory;
    std::vector<std::uint8_t> mBefore;
};

/// The same for one record of a type. Bytes that are never put hold the filler.
template <class Record>
class GuardedRecord : public GuardedBytes {
    static_assert(std::is_trivially_copyable_v<Record>);

public:
    explicit GuardedRecord(Placement placement = {}) : GuardedBytes(sizeof(Record), placement) {}
    explicit GuardedRecord(const Record& record, Placement placement = {}) : GuardedRecord(placement) { Put(record); }

    [[nodiscard]] Record Get() const {
        Record record{};
        std::memcpy(&record, Bytes().data(), sizeof record);
        return record;
    }
    void Put(const Record& record) { PutBytes(&record, sizeof record); }
};

}  // namespace lineup::validation
