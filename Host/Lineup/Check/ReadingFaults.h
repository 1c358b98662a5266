#pragma once

#include <lineup/CheckReport.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Host/Lineup/Check/Reader/Unreadable.h"

namespace lineup {

/// Why nothing can be told of a recording.
[[nodiscard]] CheckNote WhyUnreadable(const Unreadable& unreadable);

/// Adds to a report of the sound what reading has found: stretches that are damaged, where nothing else that was found
/// at their place says so already, and why reading ended early. `isStream`: it came from a URL, where the end of
/// the sender is not a fault of the path. `samples` is how many were read.
void AddReadingFaults(const RecordingReader& reader, bool isStream, std::int64_t samples, CheckReport& report);

}  // namespace lineup
