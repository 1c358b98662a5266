#include "Bridges/MLT/ModulePlace.h"

#include <lineup/BundleSearch.h>
#include "Host/Services/Core/CompanionLibrary.h"

namespace fs = std::filesystem;

namespace bridge {

namespace {

const char kPlaceMark = 0;  // lies in this module, which is how the module is found

}  // namespace

fs::path ModulePrefix() {
    return lineup::PrefixOf(zelcore::FileOf(&kPlaceMark));
}

fs::path MetadataFile() {
    return ModulePrefix() / "share" / "mlt-7" / "lineup" / "producer_barsandtone.yml";
}

}  // namespace bridge
