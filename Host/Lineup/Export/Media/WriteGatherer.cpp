#include "Host/Lineup/Export/Media/WriteGatherer.h"

#include <algorithm>
#include <new>

namespace lineup {

namespace {

constexpr std::size_t kRoom = 1 << 20;

// From here on a copy costs more than a call of the system.
constexpr std::size_t kLarge = 1 << 18;

}  // namespace

WriteGatherer::WriteGatherer(TargetFile& file)
    : mFile(&file), mGathered(std::make_unique_for_overwrite<std::uint8_t[]>(kRoom)) {}

bool WriteGatherer::Write(std::span<const std::uint8_t> bytes) noexcept {
    if (mHeldAt) {
        return WriteHeld(bytes);
    }
    const bool large = bytes.size() >= kLarge;
    if ((large || bytes.size() > kRoom - mFilled) && !Flush()) {
        return false;
    }
    if (large) {
        return mFile->Write(bytes);
    }
    std::ranges::copy(bytes, mGathered.get() + mFilled);
    mFilled += bytes.size();
    return true;
}

bool WriteGatherer::Seek(std::int64_t position) noexcept {
    if (mHeldFrom && position >= *mHeldFrom) {
        mHeldAt = static_cast<std::size_t>(position - *mHeldFrom);
        return true;
    }
    mHeldAt.reset();
    return Flush() && mFile->Seek(position);
}

bool WriteGatherer::Flush() noexcept {
    const std::size_t bytes = mFilled;
    mFilled = 0;
    return mFile->Write({mGathered.get(), bytes});
}

bool WriteGatherer::Hold() noexcept {
    mHeldFrom = Position();
    mHeldAt = 0;
    mHeld.clear();
    return Flush();
}

bool WriteGatherer::WriteHeld(std::span<const std::uint8_t> bytes) noexcept {
    try {
        mHeld.resize(std::max(mHeld.size(), *mHeldAt + bytes.size()));
    } catch (const std::bad_alloc&) {
        return false;
    }
    std::ranges::copy(bytes, mHeld.begin() + static_cast<std::ptrdiff_t>(*mHeldAt));
    *mHeldAt += bytes.size();
    return true;
}

bool WriteGatherer::Release() noexcept {
    const std::int64_t from = *mHeldFrom;
    mHeldFrom.reset();
    return Seek(from) && Write(mHeld) && Flush();
}

std::int64_t WriteGatherer::Position() const noexcept {
    if (mHeldAt) {
        return *mHeldFrom + static_cast<std::int64_t>(*mHeldAt);
    }
    return mFile->Position() + static_cast<std::int64_t>(mFilled);
}

std::int64_t WriteGatherer::Size() const noexcept {
    const std::int64_t held = mHeldFrom.value_or(0) + static_cast<std::int64_t>(mHeld.size());
    return std::max({mFile->Size(), Position(), held});
}

}  // namespace lineup
