#pragma once

#include <lineup/Api.h>

#include <filesystem>
#include <vector>

namespace lineup {

/// The folder above that of the program's executable, where everything else of it is found from. Throws Error when the
/// system does not tell.
[[nodiscard]] LINEUP_API std::filesystem::path ProgramPrefix();

/// The folder that a library or module at `file` was built or installed into: the one above the "lib" that holds
/// it. Throws Error when it lies in no such folder.
[[nodiscard]] LINEUP_API std::filesystem::path PrefixOf(const std::filesystem::path& file);

/// The prefix of liblineup itself, links followed. Throws Error like PrefixOf.
[[nodiscard]] LINEUP_API std::filesystem::path LibraryPrefix();

/// Where a program whose prefix this is looks for the plug-in's bundle, in order: beside the folder of its
/// executable, as in a build tree, then in ../lib/lineup, as installed. Nothing else is searched, no
/// variable of the environment and not the current folder; another bundle is used only when a person
/// names it.
[[nodiscard]] LINEUP_API std::vector<std::filesystem::path> BundleSearchPath(
    const std::filesystem::path& prefix = ProgramPrefix());

/// The first bundle on the search path of `prefix`. Throws Error, naming the places, when none is found; and when
/// it is not to be trusted (see PlaceTrust), naming it and the reason. A place further down the path is then
/// not tried in its stead.
[[nodiscard]] LINEUP_API std::filesystem::path FindBundle(const std::filesystem::path& prefix);

/// The same on the search path of the program's prefix and then, where that is another, of liblineup's: a program
/// that uses an installed liblineup finds the bundle that was installed with it.
[[nodiscard]] LINEUP_API std::filesystem::path FindBundle();

}  // namespace lineup
