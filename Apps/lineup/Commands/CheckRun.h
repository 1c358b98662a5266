#pragma once

#include <lineup/Check.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// Called with how far the recordings are on the whole, 0 to 1, as far as that can be told; from any thread, one at a
/// time. False stops.
using CheckRunProgress = std::function<bool(std::optional<double> share)>;

/// Checks recordings, as many at a time as there are processors, and hands the reports over in the order of the
/// recordings, on the thread that called, each as soon as it and all before it are there. Throws the first error of
/// a recording, in their order, once those that were begun have ended.
void CheckRecordings(const std::vector<std::string>& recordings,
                     const std::shared_ptr<const lineup::Importer>& importer, const lineup::CheckSettings& settings,
                     const CheckRunProgress& progress, const std::function<void(lineup::CheckReport)>& handOver);

}  // namespace cli
