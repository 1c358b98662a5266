#pragma once

#include <lineup/Watch.h>

#include <string>

/// What `lineup check --watch --json` prints, an object a line: each has the schema "lineup-watch/1" and says in
/// "event" what it is.
namespace cli {

/// "cycle"
[[nodiscard]] std::string CycleJson(const lineup::WatchedCycle& cycle);

/// "fault" where it happened at one place, else "fault-begins", or with `ends`, "fault-ends".
[[nodiscard]] std::string WatchedFaultJson(const lineup::WatchedFault& fault);

/// "summary"
[[nodiscard]] std::string WatchSummaryJson(const lineup::WatchReport& report);

}  // namespace cli
