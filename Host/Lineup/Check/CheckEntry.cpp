#include "Host/Lineup/Check/CheckEntry.h"

#include "Host/Lineup/Check/CheckRecording.h"
#include "Host/Lineup/Check/Watch/WatchRecording.h"

#include <type_traits>

// What liblineup looks up by name.
namespace lineup {

extern "C" {

LINEUP_API void lineupCheck(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                            const CheckSettings& settings, const CheckProgress& progress, CheckReport& report) {
    CheckRecording(recording, importer, settings, progress, report);
}

LINEUP_API void lineupWatch(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                            const CheckSettings& settings, const WatchListener& listener, WatchReport& report) {
    WatchRecording(recording, importer, settings, listener, report);
}
}

static_assert(std::is_same_v<decltype(lineupCheck), CheckFunction>);
static_assert(std::is_same_v<decltype(lineupWatch), WatchFunction>);

}  // namespace lineup
