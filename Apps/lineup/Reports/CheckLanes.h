#pragma once

#include <lineup/CheckReport.h>

#include <string>

namespace cli {

/// How wide the drawing of the lanes is, pixels.
inline constexpr int kCheckLanesWidth = 1000;

/// How high it is; 0 where there is nothing to draw.
[[nodiscard]] int CheckLanesHeight(const lineup::CheckReport& report);

/// The lanes of a recording, an input each: what was found, over the outline of what was expected, on a scale of dBFS,
/// with marks where faults have their place. SVG elements, from (0, 0) on.
[[nodiscard]] std::string CheckLanes(const lineup::CheckReport& report);

}  // namespace cli
