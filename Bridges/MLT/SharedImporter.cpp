#include "Bridges/MLT/SharedImporter.h"

#include <lineup/BundleSearch.h>
#include "Bridges/MLT/ModulePlace.h"

#include <mutex>

namespace bridge {

std::shared_ptr<const lineup::Importer> SharedImporter() {
    static std::mutex mutex;
    static std::weak_ptr<const lineup::Importer> loaded;
    const std::scoped_lock lock(mutex);
    std::shared_ptr<const lineup::Importer> importer = loaded.lock();
    if (!importer) {
        importer = std::make_shared<const lineup::Importer>(lineup::FindBundle(ModulePrefix()));
        loaded = importer;
    }
    return importer;
}

}  // namespace bridge
