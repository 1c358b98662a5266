#pragma once

#include <lineup/Check.h>

#include <memory>
#include <string>

namespace lineup {

/// Check, into a report that is empty before.
void CheckRecording(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                    const CheckSettings& settings, const CheckProgress& progress, CheckReport& report);

}  // namespace lineup
