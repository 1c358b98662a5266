#pragma once

#include <lineup/Watch.h>

#include <string>

/// What `lineup check --watch` prints for a person, whole lines.
namespace cli {

[[nodiscard]] std::string CycleText(const lineup::WatchedCycle& cycle);
[[nodiscard]] std::string WatchedFaultText(const lineup::WatchedFault& fault);
[[nodiscard]] std::string WatchSummaryText(const lineup::WatchReport& report);

}  // namespace cli
