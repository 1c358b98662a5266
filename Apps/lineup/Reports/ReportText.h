#pragma once

#include <lineup/ExportReport.h>

#include <cstdint>
#include <optional>
#include <string>

namespace cli {

/// What was written, a line for the file and one a stream. `cycleSamples`: what whole cycles take that were asked for;
/// where picture and sound end elsewhere, with a whole frame, that is said.
[[nodiscard]] std::string ReportText(const lineup::ExportReport& report,
                                     std::optional<std::int64_t> cycleSamples = std::nullopt);

/// The same as JSON.
[[nodiscard]] std::string ReportJson(const lineup::ExportReport& report,
                                     std::optional<std::int64_t> cycleSamples = std::nullopt);

/// The kinds of files there are and the codecs each can hold, for a help text.
[[nodiscard]] std::string FormatHelp();

}  // namespace cli
