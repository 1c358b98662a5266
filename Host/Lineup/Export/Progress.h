#pragma once

#include <lineup/Api.h>
#include <lineup/ExportSettings.h>
#include <lineup/Exporter.h>

#include <cstdint>

namespace lineup {
inline namespace parts {

/// Tells `progress`, which may be empty, how far the export of `settings` is. Throws Cancelled when it
/// answers false.
LINEUP_API void ReportProgress(const ProgressFunction& progress, std::int64_t done, std::int64_t total,
                               const ExportSettings& settings);

}  // namespace parts
}  // namespace lineup
