#pragma once

#include <lineup/ExportReport.h>

#include <string>

namespace cli {

/// What was written, a line for the file and one a stream.
[[nodiscard]] std::string ReportText(const lineup::ExportReport& report);

/// The same as JSON.
[[nodiscard]] std::string ReportJson(const lineup::ExportReport& report);

/// The kinds of files there are and the codecs each can hold, for a help text.
[[nodiscard]] std::string FormatHelp();

}  // namespace cli
