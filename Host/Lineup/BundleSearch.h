#pragma once

#include "Host/Lineup/Api.h"

#include <filesystem>
#include <vector>

namespace lineup {

/// The folder above that of the program's executable, where everything else of it is found from.
[[nodiscard]] LINEUP_API std::filesystem::path ProgramPrefix();

/// Where a program looks for the plug-in's bundle, in order: beside the folder of its executable, as
/// in a build tree, then in ../lib/lineup, as installed. Nothing else is searched; another bundle is
/// used only when a person names it.
[[nodiscard]] LINEUP_API std::vector<std::filesystem::path> BundleSearchPath();

/// The first bundle on the search path. Throws Error, naming the places, when there is none.
[[nodiscard]] LINEUP_API std::filesystem::path FindBundle();

}  // namespace lineup
