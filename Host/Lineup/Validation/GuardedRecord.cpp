#include "Host/Lineup/Validation/GuardedRecord.h"

#include "Host/Lineup/Validation/Examination.h"

#include <algorithm>

namespace lineup::validation {

namespace {

constexpr std::size_t kGuardBytes = 256;

}  // namespace

GuardedBytes::GuardedBytes(std::size_t size, Placement placement)
    : mStart(kGuardBytes + placement.misalignment),
      mSize(size),
      mMemory(mStart + size + kGuardBytes, placement.filler),
      mBefore(mMemory) {}

void GuardedBytes::PutBytes(const void* bytes, std::size_t size) {
    std::memcpy(mMemory.data() + mStart, bytes, size);
    std::memcpy(mBefore.data() + mStart, bytes, size);
}

void GuardedBytes::RequireUnchanged(std::string_view what, std::initializer_list<Field> fields) const {
    for (std::size_t i = 0; i < mMemory.size(); ++i) {
        if (mMemory[i] == mBefore[i]) {
            continue;
        }
        Require(i >= mStart, "{} was written to {} bytes before its start", what, mStart - i);
        const std::size_t offset = i - mStart;
        Require(offset < mSize, "{} was written past: {} bytes after its end", what, offset - mSize + 1);
        const bool named = std::ranges::any_of(fields, [offset](const Field& field) {
            return offset >= field.offset && offset < field.offset + field.bytes;
        });
        Require(named, "{} changed at byte {}, which is not the plug-in's to write", what, offset);
    }
}

}  // namespace lineup::validation
