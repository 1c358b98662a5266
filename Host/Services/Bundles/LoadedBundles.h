#pragma once

#include "Host/Interface/Platform/CFBundle.h"

#include <filesystem>
#include <string>
#include <vector>

/// What a bundle reference refers to. Handles live as long as the process.
struct __CFBundle {
    std::filesystem::path folder;
    std::string identifier;
};

namespace zelcore {

/// The bundles whose executable is loaded in this process at the moment, however it was loaded, in the
/// order of loading. Cheap while nothing is loaded or unloaded. Any thread.
[[nodiscard]] std::vector<CFBundleRef> LoadedBundles();

}  // namespace zelcore
