#pragma once

#include <lineup/Api.h>
#include <lineup/Check.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lineup::validation {

/// Runs a check in this process. The same seed draws the same numbers. Nothing is thrown: what a check
/// throws is its finding. A bundle that crashes or never returns takes the process along.
[[nodiscard]] LINEUP_API Finding RunCheck(const Check& check, const std::filesystem::path& bundleFolder,
                                          std::uint64_t seed);

/// Starts a program that runs one check and reports with ReportToParent, and waits for it, for as long
/// as `timeout`. `arguments` begin with the program. Its standard output goes to standard error, so that
/// what a bundle prints is not taken for a report. Anything but a whole report, and an end in good
/// order after it, is a fault. Throws Error when the program cannot be started. One at a time: the
/// calling thread waits for SIGCHLD meanwhile.
[[nodiscard]] LINEUP_API Finding RunInChild(const std::vector<std::string>& arguments,
                                            std::chrono::milliseconds timeout);

/// For the program that RunInChild starts: ends together with its parent, and leaves no memory image
/// when it crashes.
LINEUP_API void PrepareChild();

/// For the same: reports, and ends the process at once, without running what the bundle left to be run.
[[noreturn]] LINEUP_API void ReportToParent(const Finding& finding);

}  // namespace lineup::validation
