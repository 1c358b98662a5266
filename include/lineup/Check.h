#pragma once

#include <lineup/Api.h>
#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>
#include <lineup/Error.h>
#include <lineup/Exporter.h>
#include <lineup/UsageError.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lineup {

class Importer;

/// Called as a check goes on, several times a second even while nothing arrives: with the seconds of the recording that
/// have been read, and the seconds there are in all where the recording says so. Returns false to stop. Called on the
/// thread that checks. May be empty.
using CheckProgress = std::function<bool(double seconds, std::optional<double> all)>;

/// Says what a path did to the line-up in a recording. `recording` is a file, "-" for standard input, or a URL that the
/// FFmpeg libraries open; all its sound tracks count, in their order. What was sent is what the plug-in gives for the
/// same clip. The recording is read once, in an amount of memory that does not grow with it, and decoded by a process
/// without rights. One that cannot be read is not an error: the report's verdict is CannotTell, and a note says why.
/// Throws UsageError as ValidateCheckSettings does; Cancelled when `progress` returned false; Error when decoding
/// cannot be started, and what the plug-in throws. Any thread.
[[nodiscard]] LINEUP_API CheckReport Check(const std::string& recording,
                                           const std::shared_ptr<const Importer>& importer,
                                           const CheckSettings& settings = {}, const CheckProgress& progress = {});

}  // namespace lineup
