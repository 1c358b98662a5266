#pragma once

#include <lineup/interface/Media/TickTime.h>

#include <functional>
#include <string>
#include <vector>

namespace lanes {

/// A mark of a time axis.
struct TimeMark {
    zelmediatypes::TickTime time;
    std::string text;
};

/// The marks of an axis from `start` over `length`, at the shortest step that leaves every text the room it needs:
/// `roomTicks` of it, as a span of the axis.
[[nodiscard]] std::vector<TimeMark> TimeMarks(zelmediatypes::TickTime start, zelmediatypes::TickTime length,
                                              const std::function<double(const std::string& text)>& roomTicks);

}  // namespace lanes
