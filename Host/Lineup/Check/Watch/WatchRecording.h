#pragma once

#include <lineup/Watch.h>

#include <memory>
#include <string>

namespace lineup {

/// Watch, into a report that is empty before.
void WatchRecording(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                    const CheckSettings& settings, const WatchListener& listener, WatchReport& report);

}  // namespace lineup
