#include <lineup/Check.h>
#include <lineup/Watch.h>
#include "Host/Lineup/Check/CheckEntry.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

namespace lineup {

namespace {

template <class Function>
Function& FromCheckLibrary(const char* name) {
    return DynamicLibrary::Companion(kCheckLibraryName).Function<Function>(name, "cannot check");
}

}  // namespace

CheckReport Check(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                  const CheckSettings& settings, const CheckProgress& progress) {
    CheckReport report;
    FromCheckLibrary<CheckFunction>(kCheckName)(recording, importer, settings, progress, report);
    return report;
}

WatchReport Watch(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                  const CheckSettings& settings, const WatchListener& listener) {
    WatchReport report;
    FromCheckLibrary<WatchFunction>(kWatchName)(recording, importer, settings, listener, report);
    return report;
}

}  // namespace lineup
