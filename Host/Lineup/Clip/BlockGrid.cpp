#include "Host/Lineup/Clip/BlockGrid.h"

#include "Host/Interface/Media/TickTime.h"

#include <algorithm>
#include <limits>

namespace lineup {
inline namespace parts {

namespace {

// Clip times of far samples need more than 64 bits.
__extension__ using Int128 = __int128;

constexpr float kAnyRateHz = 48000.0F;
constexpr std::int64_t kTicksPerBlock = zelmediatypes::kTicksPerSecond / 10;

Int128 FloorDivide(Int128 a, Int128 b) {
    const Int128 quotient = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? quotient - 1 : quotient;
}

std::int64_t Narrow(Int128 value) {
    constexpr Int128 kLowest = std::numeric_limits<std::int64_t>::min();
    constexpr Int128 kHighest = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::clamp(value, kLowest, kHighest));
}

}  // namespace

BlockGrid::BlockGrid(float sampleRateHz) noexcept
    : mTicksPerSample(zelmediatypes::FrameRateFromHz(sampleRateHz).Ticks()) {
    // Samples that take no time, or run backwards, have no place in clip time: any even cut serves.
    if (mTicksPerSample <= 0) {
        mTicksPerSample = zelmediatypes::FrameRateFromHz(kAnyRateHz).Ticks();
    }
}

std::int64_t BlockGrid::BlockStart(std::int64_t position) const noexcept {
    const Int128 block = FloorDivide(Int128{position} * mTicksPerSample, kTicksPerBlock);
    return Narrow(-FloorDivide(-block * kTicksPerBlock, mTicksPerSample));
}

std::int64_t BlockGrid::NextBlockStart(std::int64_t position) const noexcept {
    const Int128 block = FloorDivide(Int128{position} * mTicksPerSample, kTicksPerBlock) + 1;
    return Narrow(-FloorDivide(-block * kTicksPerBlock, mTicksPerSample));
}

std::int64_t BlockGrid::LongestBlock() const noexcept {
    return kTicksPerBlock / mTicksPerSample + 1;
}

}  // namespace parts
}  // namespace lineup
