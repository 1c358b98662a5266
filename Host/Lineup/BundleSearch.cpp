#include "Host/Lineup/BundleSearch.h"

#include "Host/Lineup/Error.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace lineup {

namespace {

constexpr const char* kBundleName = "BarsAndTone.bundle";

}  // namespace

fs::path ProgramPrefix() {
    return fs::read_symlink("/proc/self/exe").parent_path().parent_path();
}

std::vector<fs::path> BundleSearchPath() {
    const fs::path prefix = ProgramPrefix();
    return {prefix / kBundleName, prefix / "lib" / "lineup" / kBundleName};
}

fs::path FindBundle() {
    const auto places = BundleSearchPath();
    const auto found = std::ranges::find_if(places, [](const fs::path& place) {
        std::error_code error;
        return fs::is_directory(place, error);
    });
    if (found != places.end()) {
        return *found;
    }
    std::string text = "cannot find the plug-in. These places were looked at:";
    for (const fs::path& place : places) {
        text += "\n  " + place.string();
    }
    throw Error(text);
}

}  // namespace lineup
