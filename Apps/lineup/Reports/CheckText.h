#pragma once

#include <lineup/CheckReport.h>

#include <string>

namespace cli {

/// How much of a report a person wants to see, and how.
struct CheckTextStyle {
    bool isColoured = false;
    bool namesRecording = false;  ///< where there are several
};

/// What was found, as a table and a line a fault.
[[nodiscard]] std::string CheckText(const lineup::CheckReport& report, const CheckTextStyle& style = {});

/// What is wrong and nothing else, "RECORDING: SENTENCE" a line; empty where nothing is.
[[nodiscard]] std::string CheckComplaints(const lineup::CheckReport& report);

}  // namespace cli
