#pragma once

#include <lineup/Api.h>
#include <lineup/Exporter.h>
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <cstdint>

namespace lineup {
inline namespace parts {

/// Tells `progress`, which may be empty, how far the writing of `plan` is. Throws Cancelled when it answers false.
LINEUP_API void ReportProgress(const ProgressFunction& progress, std::int64_t done, std::int64_t total,
                               const ExportPlan& plan);

}  // namespace parts
}  // namespace lineup
