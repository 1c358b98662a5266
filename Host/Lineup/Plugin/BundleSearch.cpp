#include <lineup/BundleSearch.h>
#include <lineup/Error.h>
#include "Host/Lineup/Plugin/PlaceTrust.h"
#include "Host/Services/Core/CompanionLibrary.h"

#include <fmt/format.h>

namespace fs = std::filesystem;

namespace lineup {

namespace {

constexpr const char* kBundleName = "BarsAndTone.bundle";
const char kHere = 0;  // an address in this library

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

bool HoldsLibraries(const fs::path& folder) {
    return folder.filename() == "lib" || folder.filename() == "lib64";
}

// The program's and the library's, each once. A library that was put beside its program has none.
std::vector<fs::path> OwnPrefixes() {
    std::vector<fs::path> prefixes = {ProgramPrefix()};
    try {
        if (const fs::path prefix = LibraryPrefix(); prefix != prefixes.front()) {
            prefixes.push_back(prefix);
        }
    } catch (const Error&) {
    }
    return prefixes;
}

fs::path FindIn(const std::vector<fs::path>& prefixes) {
    std::string text = "cannot find the plug-in. These places were looked at:";
    for (const fs::path& prefix : prefixes) {
        for (const fs::path& place : BundleSearchPath(prefix)) {
            std::error_code error;
            if (fs::is_directory(place, error)) {
                RequireTrustedBundle(prefix, place);
                return place;
            }
            text += "\n  " + place.string();
        }
    }
    throw Error(text);
}

}  // namespace

fs::path ProgramPrefix() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) {
        throw Error("cannot tell where this program was installed: " + error.message());
    }
    return program.parent_path().parent_path();
}

fs::path PrefixOf(const fs::path& file) {
    fs::path folder = file.parent_path();
    while (!HoldsLibraries(folder)) {
        if (!folder.has_relative_path()) {
            throw Error(
                fmt::format("cannot tell where {} was installed: it lies in no folder called lib", file.string()));
        }
        folder = folder.parent_path();
    }
    return folder.parent_path();
}

fs::path LibraryPrefix() {
    return PrefixOf(zelcore::FileOf(&kHere));
}

std::vector<fs::path> BundleSearchPath(const fs::path& prefix) {
    return {prefix / kBundleName, prefix / "lib" / "lineup" / kBundleName};
}

fs::path FindBundle(const fs::path& prefix) {
    return FindIn({prefix});
}

fs::path FindBundle() {
    return FindIn(OwnPrefixes());
}

}  // namespace lineup
