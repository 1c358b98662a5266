#pragma once

#include "Tests/Mac/Loader/MachOImage.h"

#include <filesystem>

namespace test {

/// Where a bundle for macOS finds its symbols on this system: the host's services in the library of them that is
/// built with macOS's C++ library, the C++ library's and the C library's in this machine's, and what only a Mac has
/// in a few lines here. A symbol that is not there, or a library that has nothing in its place, is a
/// std::runtime_error that names it. `bundle` is the folder of the one bundle that the process loads.
MachOImage::Resolver MakeMacSystem(const std::filesystem::path& bundle);

}  // namespace test
