#include "Host/Lineup/Validation/Probes/GuardedRecord.h"

#include <fmt/format.h>

#include <algorithm>

namespace lineup::validation {

namespace {

constexpr std::size_t kRecordGuardBytes = 256;

}  // namespace

GuardedBytes::GuardedBytes(std::size_t size, Placement placement)
    : mStart(kRecordGuardBytes + placement.misalignment),
      mSize(size),
      mMemory(mStart + size + kRecordGuardBytes, placement.filler),
      mBefore(mMemory) {}

GuardedBytes::GuardedBytes(std::span<const std::uint8_t> bytes, Placement placement)
    : GuardedBytes(bytes.size(), placement) {
    PutBytes(bytes.data(), bytes.size());
}

void GuardedBytes::PutBytes(const void* bytes, std::size_t size, std::size_t offset) {
    if (size > 0) {
        std::memcpy(mMemory.data() + mStart + offset, bytes, size);
        std::memcpy(mBefore.data() + mStart + offset, bytes, size);
    }
}

std::string GuardedBytes::ChangedOutside(std::initializer_list<Field> fields) const {
    for (std::size_t i = 0; i < mMemory.size(); ++i) {
        if (mMemory[i] == mBefore[i]) {
            continue;
        }
        if (i < mStart) {
            return fmt::format("was written to {} bytes before its start", mStart - i);
        }
        const std::size_t offset = i - mStart;
        if (offset >= mSize) {
            return fmt::format("was written past: {} bytes after its end", offset - mSize + 1);
        }
        const bool named = std::ranges::any_of(fields, [offset](const Field& field) {
            return offset >= field.offset && offset < field.offset + field.bytes;
        });
        if (!named) {
            return fmt::format("changed at byte {}, which is not the plug-in's to write", offset);
        }
    }
    return {};
}

}  // namespace lineup::validation
