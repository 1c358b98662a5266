#pragma once

#include <lineup/CheckReport.h>

#include <span>
#include <string>

namespace cli {

/// The reports as JUnit XML, which servers for continuous integration read: a suite a recording, with a case for
/// each kind of fault that was looked for.
[[nodiscard]] std::string CheckJunit(std::span<const lineup::CheckReport> reports);

}  // namespace cli
