#include "Bridges/GStreamer/Importers.h"

#include <lineup/BundleSearch.h>

#include <map>
#include <mutex>

namespace gstreamer {

std::shared_ptr<const lineup::Importer> ImporterAt(const std::string& path) {
    static std::mutex mutex;
    static std::map<std::string, std::weak_ptr<const lineup::Importer>> loaded;
    const std::scoped_lock lock(mutex);
    std::shared_ptr<const lineup::Importer> importer = loaded[path].lock();
    if (!importer) {
        const auto bundle = path.empty() ? lineup::FindBundle(lineup::LibraryPrefix()) : std::filesystem::path(path);
        importer = std::make_shared<const lineup::Importer>(bundle);
        loaded[path] = importer;
    }
    return importer;
}

}  // namespace gstreamer
