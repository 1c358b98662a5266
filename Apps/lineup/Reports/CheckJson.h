#pragma once

#include <lineup/CheckReport.h>

#include <string>

namespace cli {

/// The report as one line of JSON, of the schema "lineup-check/1". What could not be measured is null.
[[nodiscard]] std::string CheckJson(const lineup::CheckReport& report);

}  // namespace cli
