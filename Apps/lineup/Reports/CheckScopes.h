#pragma once

#include <lineup/CheckReport.h>

#include <string>

namespace cli {

/// How high the drawing of a picture is, pixels; 0 where no card was found. It is as wide as the lanes.
[[nodiscard]] int CheckScopesHeight(const lineup::CheckReport& report);

/// The card that was found, the patches that are off outlined; a vectorscope and a waveform monitor with boxes for what
/// is due and points for what was measured. SVG elements, from (0, 0) on.
[[nodiscard]] std::string CheckScopes(const lineup::CheckReport& report);

}  // namespace cli
