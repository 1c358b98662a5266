#include "Host/Lineup/Clip/BlockGrid.h"

#include "Host/Interface/Media/TickTime.h"

#include <algorithm>
#include <array>
#include <limits>

namespace lineup {
inline namespace parts {

namespace {

// Clip times of far samples need more than 64 bits.
__extension__ using Int128 = __int128;

constexpr float kAnyRateHz = 48000.0F;
constexpr std::int64_t kTicksPerMs = zelmediatypes::kTicksPerSecond / 1000;

// Those that go into a tenth of a second.
constexpr std::array<std::int64_t, 9> kBlockMs = {1, 2, 4, 5, 10, 20, 25, 50, 100};
constexpr std::int64_t kUnevenBlockMs = 10;

Int128 FloorDivide(Int128 a, std::int64_t b) {
    if (const auto narrow = static_cast<std::int64_t>(a); narrow == a) {  // as it nearly always is, and far quicker
        return narrow / b - (narrow % b < 0 ? 1 : 0);
    }
    return a / b - (a % b < 0 ? 1 : 0);
}

std::int64_t Narrow(Int128 value) {
    constexpr Int128 kLowest = std::numeric_limits<std::int64_t>::min();
    constexpr Int128 kHighest = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::clamp(value, kLowest, kHighest));
}

}  // namespace

BlockGrid::BlockGrid(float sampleRateHz) noexcept
    : mSampleLength(zelmediatypes::FrameRateFromHz(sampleRateHz).Ticks()) {
    // Samples that take no time, or run backwards, have no place in clip time: any even cut serves.
    if (mSampleLength <= 0) {
        mSampleLength = zelmediatypes::FrameRateFromHz(kAnyRateHz).Ticks();
    }
    const auto* const whole =
        std::ranges::find_if(kBlockMs, [this](std::int64_t ms) { return ms * kTicksPerMs % mSampleLength == 0; });
    mBlockLength = (whole != kBlockMs.end() ? *whole : kUnevenBlockMs) * kTicksPerMs;
    if (whole != kBlockMs.end()) {
        mBlockLength /= mSampleLength;
        mSampleLength = 1;
    }
}

BlockGrid::Block BlockGrid::BlockAt(std::int64_t position) const noexcept {
    const Int128 block = FloorDivide(Int128{position} * mSampleLength, mBlockLength);
    return {.start = Narrow(-FloorDivide(-block * mBlockLength, mSampleLength)),
            .end = Narrow(-FloorDivide(-(block + 1) * mBlockLength, mSampleLength))};
}

BlockGrid::Block BlockGrid::BlockAfter(const Block& block) const noexcept {
    if (mSampleLength == 1 && block.end <= std::numeric_limits<std::int64_t>::max() - mBlockLength) {
        return {.start = block.end, .end = block.end + mBlockLength};
    }
    return BlockAt(block.end);
}

std::int64_t BlockGrid::LongestBlock() const noexcept {
    return (mBlockLength - 1) / mSampleLength + 1;
}

}  // namespace parts
}  // namespace lineup
