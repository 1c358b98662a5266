#include "Bridges/MLT/ModulePlace.h"

#include "Host/Lineup/Error.h"

#include <dlfcn.h>

namespace fs = std::filesystem;

namespace bridge {

namespace {

const char kPlaceMark = 0;  // lies in this module, which is how the module is found

bool HoldsLibraries(const fs::path& folder) {
    return folder.filename() == "lib" || folder.filename() == "lib64";
}

}  // namespace

fs::path PrefixOf(const fs::path& file) {
    fs::path folder = file.parent_path();
    while (!HoldsLibraries(folder)) {
        if (!folder.has_relative_path()) {
            throw lineup::Error("cannot tell where " + file.string() +
                                " was installed: it lies in no folder called lib");
        }
        folder = folder.parent_path();
    }
    return folder.parent_path();
}

fs::path ModulePrefix() {
    Dl_info info{};
    if (dladdr(&kPlaceMark, &info) == 0) {
        throw lineup::Error("cannot tell where the MLT module was loaded from");
    }
    return PrefixOf(fs::canonical(info.dli_fname));
}

fs::path MetadataFile() {
    return ModulePrefix() / "share" / "mlt-7" / "lineup" / "producer_barsandtone.yml";
}

}  // namespace bridge
