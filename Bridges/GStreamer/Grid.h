#pragma once

#include <lineup/Rational.h>

#include <cstdint>
#include <gst/gst.h>

namespace gstreamer {

/// Where frames or samples lie in stream time: number n at n / rate seconds, in nanoseconds, rounded down. Computed
/// from the number each time, so that nothing adds up however long a stream runs.
class Grid {
public:
    /// `rate` a second.
    explicit Grid(lineup::Rational rate);

    /// When number `n`, 0 or more, begins.
    [[nodiscard]] GstClockTime TimeOf(std::int64_t n) const noexcept;

    /// The last that has begun at `time`.
    [[nodiscard]] std::int64_t At(GstClockTime time) const noexcept;

    /// The first that begins at `time` or later.
    [[nodiscard]] std::int64_t From(GstClockTime time) const noexcept;

private:
    guint64 mNumber;       // so many
    guint64 mNanoseconds;  // in so long
};

}  // namespace gstreamer
