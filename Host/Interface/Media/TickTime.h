#pragma once

#include <compare>
#include <cstdint>
#include <limits>

#include "../Core/Numeric.h"

/// Clip time as both sides of the importer boundary count it.
namespace zelmediatypes {

/// Ticks in one second. Every common audio rate and every common video frame rate divides it.
inline constexpr std::int64_t kTicksPerSecond = 254016000000;

/// The length of one frame or sample, in ticks.
class FrameRate {
public:
    constexpr FrameRate() noexcept = default;
    constexpr explicit FrameRate(std::int64_t ticks) noexcept : mTicks(ticks) {}

    [[nodiscard]] constexpr std::int64_t Ticks() const noexcept { return mTicks; }
    constexpr auto operator<=>(const FrameRate&) const noexcept = default;

private:
    std::int64_t mTicks = 0;
};

/// The value that stands for a missing rate.
inline constexpr FrameRate kNoFrameRate{std::numeric_limits<std::int64_t>::max()};

/// The tick length of one sample at `rateHz`: kTicksPerSecond / rateHz in double, truncated;
/// kNoFrameRate for a rate of exactly 0. A quotient that does not fit gives the most negative length.
constexpr FrameRate FrameRateFromHz(float rateHz) noexcept {
    if (rateHz == 0.0F) {
        return kNoFrameRate;
    }
    return FrameRate(
        zelcore::numeric::TruncateToInt64(static_cast<double>(kTicksPerSecond) / static_cast<double>(rateHz)));
}

/// The rate in Hz derived back from a tick length; 0 for kNoFrameRate, infinite for a length of 0.
constexpr double RateHz(const FrameRate& frameRate) noexcept {
    return frameRate == kNoFrameRate ? 0.0
                                     : static_cast<double>(kTicksPerSecond) / static_cast<double>(frameRate.Ticks());
}

/// A point of clip time or a span of it: a signed count of ticks. Arithmetic wraps at 64 bits.
class TickTime {
public:
    constexpr TickTime() noexcept = default;
    constexpr explicit TickTime(std::int64_t ticks) noexcept : mTicks(ticks) {}

    [[nodiscard]] constexpr std::int64_t Ticks() const noexcept { return mTicks; }

    /// The whole frames of `frameRate` in this time, rounded down for negative times too, so frame k
    /// covers [k, k + 1) frame lengths everywhere: 25 frames/s at 0.99 s is frame 24, at -0.01 s
    /// frame -1. 0 for a frame of no length.
    [[nodiscard]] constexpr std::int64_t ToFrame64(const FrameRate& frameRate) const noexcept {
        return zelcore::numeric::FloorDivide(mTicks, frameRate.Ticks());
    }

    constexpr auto operator<=>(const TickTime&) const noexcept = default;

    constexpr TickTime& operator+=(const TickTime& other) noexcept {
        mTicks = zelcore::numeric::WrappingAdd(mTicks, other.mTicks);
        return *this;
    }
    constexpr TickTime& operator-=(const TickTime& other) noexcept {
        mTicks = zelcore::numeric::WrappingSubtract(mTicks, other.mTicks);
        return *this;
    }

private:
    std::int64_t mTicks = 0;
};

constexpr TickTime operator+(TickTime a, const TickTime& b) noexcept {
    return a += b;
}
constexpr TickTime operator-(TickTime a, const TickTime& b) noexcept {
    return a -= b;
}

/// `count` frames as a span of time: FrameRate(5292000) * 48000 is one second.
constexpr TickTime operator*(const FrameRate& frameRate, std::int64_t count) noexcept {
    return TickTime(zelcore::numeric::WrappingMultiply(frameRate.Ticks(), count));
}

inline constexpr TickTime kTime_Zero{};

}  // namespace zelmediatypes
