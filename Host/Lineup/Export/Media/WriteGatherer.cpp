#include "Host/Lineup/Export/Media/WriteGatherer.h"

#include <algorithm>

namespace lineup {

namespace {

constexpr std::size_t kRoom = 1 << 20;

// From here on a copy costs more than a call of the system.
constexpr std::size_t kLarge = 1 << 18;

}  // namespace

WriteGatherer::WriteGatherer(TargetFile& file)
    : mFile(&file), mGathered(std::make_unique_for_overwrite<std::uint8_t[]>(kRoom)) {}

bool WriteGatherer::Write(std::span<const std::uint8_t> bytes) noexcept {
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
    return Flush() && mFile->Seek(position);
}

bool WriteGatherer::Flush() noexcept {
    const std::size_t bytes = mFilled;
    mFilled = 0;
    return mFile->Write({mGathered.get(), bytes});
}

std::int64_t WriteGatherer::Position() const noexcept {
    return mFile->Position() + static_cast<std::int64_t>(mFilled);
}

std::int64_t WriteGatherer::Size() const noexcept {
    return std::max(mFile->Size(), Position());
}

}  // namespace lineup
