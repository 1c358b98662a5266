#pragma once

#include "Tests/Bridges/MLT/Framework.h"

#include <filesystem>

namespace test {

/// The samples of a Wave file of 32-bit floats. Throws std::runtime_error for any other file.
Planes ReadFloatWave(const std::filesystem::path& file);

}  // namespace test
