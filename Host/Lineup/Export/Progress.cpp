#include "Host/Lineup/Export/Progress.h"

#include <fmt/format.h>

namespace lineup {
inline namespace parts {

void ReportProgress(const ProgressFunction& progress, std::int64_t done, std::int64_t total, const ExportPlan& plan) {
    if (progress && !progress(done, total)) {
        throw Cancelled(fmt::format("cannot finish {}: cancelled", plan.target.string()));
    }
}

}  // namespace parts
}  // namespace lineup
