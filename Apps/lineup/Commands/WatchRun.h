#pragma once

#include <lineup/Watch.h>

#include <memory>
#include <string>

namespace cli {

/// How much of a watch is printed.
struct WatchStyle {
    bool json = false;
    bool quiet = false;  ///< faults alone
};

/// Watches a feed until it ends or a signal comes, prints what it says as it comes, and the summary at its end.
lineup::CheckVerdict WatchFeed(const std::string& recording, const std::shared_ptr<const lineup::Importer>& importer,
                               const lineup::CheckSettings& settings, const WatchStyle& style);

}  // namespace cli
