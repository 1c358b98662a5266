#pragma once

#include "Host/Interface/Core/Export.h"

#include <filesystem>

/// Where libraries find those that belong to them and are loaded only when they are needed. Any thread.
namespace zelcore {
inline namespace parts {

/// The file that the code or constant at `address` was loaded from, links followed; empty when it cannot be told.
[[nodiscard]] ZEL_API std::filesystem::path FileOf(const void* address);

/// The library called `name` that belongs to the library at `file`: in the same folder, as in a build tree, else
/// in the folder "lineup-VERSION" there, as installed. Without a file it is the bare name, which the system looks up
/// where it finds libraries.
[[nodiscard]] ZEL_API std::filesystem::path CompanionLibrary(const std::filesystem::path& file, const char* name);

}  // namespace parts
}  // namespace zelcore
