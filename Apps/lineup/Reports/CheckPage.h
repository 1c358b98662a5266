#pragma once

#include <lineup/CheckReport.h>

#include <span>
#include <string>

namespace cli {

/// The reports as a page of HTML that needs nothing else: lanes, table, faults and notes of each.
[[nodiscard]] std::string CheckPage(std::span<const lineup::CheckReport> reports);

/// The same as one SVG drawing.
[[nodiscard]] std::string CheckDrawing(std::span<const lineup::CheckReport> reports);

}  // namespace cli
