#pragma once

#include <cstdint>
#include <optional>

namespace lineup::decoding {

/// Turns the time stamps of a track's frames into places among its samples. Frames follow each other without a gap
/// unless the stamps say that about a frame or more is missing: stamps are rounded, and those that go back or far ahead
/// say nothing of what was recorded.
class TrackClock {
public:
    /// `rate` in Hz; `origin` is the stamp, in seconds, of position 0.
    TrackClock(double rate, double origin);

    struct Place {
        std::int64_t position = 0;  ///< of the frame's first sample
        std::int64_t gap = 0;       ///< samples that are missing before it
    };

    /// The place of the next frame, `count` samples long, that is stamped `seconds`, or not at all; `tick` is
    /// what stamps are rounded to, in seconds.
    Place Next(std::optional<double> seconds, double tick, std::int64_t count);

    /// Where the last frame ended.
    [[nodiscard]] std::int64_t End() const noexcept { return mEnd; }

private:
    [[nodiscard]] std::int64_t StartAt(double seconds) const;
    [[nodiscard]] std::int64_t GapBefore(double seconds, double tick, std::int64_t count) const;

    double mRate;
    double mOrigin;
    std::int64_t mEnd = 0;
    bool mHasBegun = false;
    std::optional<double> mEndStamp;  // of the last frame, by its own stamp
    std::int64_t mLastCount = 0;
};

}  // namespace lineup::decoding
