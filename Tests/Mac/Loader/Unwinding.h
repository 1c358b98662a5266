#pragma once

#include "Tests/Mac/Loader/MachOFile.h"

#include <cstdint>

namespace test {

/// Lets exceptions pass through the functions of a file whose address 0 lies at `base` and whose symbols are bound:
/// tells this system in its own form what the file says in the compact one of macOS. Throws std::runtime_error for a
/// function of a form that bundles built with frame pointers do not have. Call once for a file.
void RegisterUnwinding(const MachOFile& file, const std::uint8_t* base);

}  // namespace test
