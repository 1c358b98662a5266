#include "Bridges/GStreamer/Grid.h"

namespace gstreamer {

Grid::Grid(lineup::Rational rate)
    : mNumber(static_cast<guint64>(rate.num)), mNanoseconds(static_cast<guint64>(rate.den) * GST_SECOND) {}

GstClockTime Grid::TimeOf(std::int64_t n) const noexcept {
    return gst_util_uint64_scale(static_cast<guint64>(n), mNanoseconds, mNumber);
}

std::int64_t Grid::At(GstClockTime time) const noexcept {
    const auto n = static_cast<std::int64_t>(gst_util_uint64_scale(time, mNumber, mNanoseconds));
    // The time of the next one may be rounded down to this one's last nanosecond.
    return TimeOf(n + 1) <= time ? n + 1 : n;
}

std::int64_t Grid::From(GstClockTime time) const noexcept {
    const std::int64_t n = At(time);
    return TimeOf(n) < time ? n + 1 : n;
}

}  // namespace gstreamer
