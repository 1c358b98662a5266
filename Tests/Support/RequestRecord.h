#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <ostream>
#include <vector>

namespace test {

/// Where a request record lies, and what its bytes hold before anything is put there.
struct Placement {
    std::uint8_t filler = 0xCC;
    std::size_t misalignment = 0;  ///< bytes past a 16-byte boundary
};

inline std::ostream& operator<<(std::ostream& out, const Placement& placement) {
    return out << "filled with " << int{placement.filler} << ", " << placement.misalignment << " bytes off";
}

/// Two fillers, since a write that repeats the filler cannot be seen; even and odd addresses, since
/// records are packed.
inline constexpr std::array<Placement, 4> kPlacements = {
    {{.filler = 0xCC}, {.filler = 0x33}, {.filler = 0xCC, .misalignment = 1}, {.filler = 0x33, .misalignment = 7}}};

/// A request record as bytes at offsets, in the middle of guarded memory. What the host puts in counts
/// as its state before the request.
class RequestRecord {
public:
    explicit RequestRecord(std::size_t size, Placement placement = {})
        : mStart(kGuard + placement.misalignment),
          mMemory(mStart + size + kGuard, placement.filler),
          mBefore(mMemory) {}

    [[nodiscard]] void* Data() { return mMemory.data() + mStart; }

    template <class T>
    RequestRecord& Put(std::size_t offset, T value) {
        std::memcpy(mMemory.data() + mStart + offset, &value, sizeof value);
        std::memcpy(mBefore.data() + mStart + offset, &value, sizeof value);
        return *this;
    }

    template <class T>
    [[nodiscard]] T Get(std::size_t offset) const {
        T value;
        std::memcpy(&value, mMemory.data() + mStart + offset, sizeof value);
        return value;
    }

    /// Bytes of the record from `offset` on.
    struct Field {
        std::ptrdiff_t offset;
        std::ptrdiff_t bytes;
    };

    /// The offsets of all bytes that a request changed, guards included, but for those in `fields`.
    [[nodiscard]] std::vector<std::ptrdiff_t> ChangedBytesOutside(std::initializer_list<Field> fields) const {
        std::vector<std::ptrdiff_t> changed;
        for (std::size_t i = 0; i < mMemory.size(); ++i) {
            const auto offset = static_cast<std::ptrdiff_t>(i) - static_cast<std::ptrdiff_t>(mStart);
            const bool named = std::any_of(fields.begin(), fields.end(), [offset](const Field& field) {
                return offset >= field.offset && offset < field.offset + field.bytes;
            });
            if (!named && mMemory[i] != mBefore[i]) {
                changed.push_back(offset);
            }
        }
        return changed;
    }

    /// All bytes are the other's, guards included.
    [[nodiscard]] bool SameBytes(const RequestRecord& other) const { return mMemory == other.mMemory; }

    /// No byte changed, guards included.
    [[nodiscard]] bool Untouched() const { return mMemory == mBefore; }

private:
    static constexpr std::size_t kGuard = 64;

    std::size_t mStart;
    std::vector<std::uint8_t> mMemory;
    std::vector<std::uint8_t> mBefore;
};

}  // namespace test
