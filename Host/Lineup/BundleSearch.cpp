#include "Host/Lineup/BundleSearch.h"

#include "Host/Lineup/Error.h"
#include "Host/Lineup/PlaceTrust.h"

#include <fmt/format.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace lineup {

namespace {

constexpr const char* kBundleName = "BarsAndTone.bundle";

void RequireTrustedBundle(const fs::path& prefix, const fs::path& bundle) {
    try {
        RequireTrusted(prefix, bundle);
    } catch (const Error& error) {
        throw Error(
            fmt::format("will not use the plug-in at {} unasked: {}. Change that, or name the bundle to use it "
                        "all the same",
                        bundle.string(), error.what()));
    }
}

}  // namespace

fs::path ProgramPrefix() {
    return fs::read_symlink("/proc/self/exe").parent_path().parent_path();
}

std::vector<fs::path> BundleSearchPath(const fs::path& prefix) {
    return {prefix / kBundleName, prefix / "lib" / "lineup" / kBundleName};
}

fs::path FindBundle(const fs::path& prefix) {
    const auto places = BundleSearchPath(prefix);
    const auto found = std::ranges::find_if(places, [](const fs::path& place) {
        std::error_code error;
        return fs::is_directory(place, error);
    });
    if (found != places.end()) {
        RequireTrustedBundle(prefix, *found);
        return *found;
    }
    std::string text = "cannot find the plug-in. These places were looked at:";
    for (const fs::path& place : places) {
        text += "\n  " + place.string();
    }
    throw Error(text);
}

}  // namespace lineup
