#pragma once

#include <lineup/CheckReport.h>

#include <filesystem>
#include <span>

namespace cli {

/// Throws UsageError when a report cannot have this name: its ending says which kind it is, .html, .svg or .xml.
void RequireReportName(const std::filesystem::path& target);

/// Writes the reports as one file, in the place of one of that name. Throws what RequireReportName does, and Error when
/// it cannot be written; a file that was there is then as it was.
void WriteCheckReport(const std::filesystem::path& target, std::span<const lineup::CheckReport> reports);

}  // namespace cli
