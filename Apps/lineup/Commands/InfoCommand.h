#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup info`: what the plug-in says of itself and of a clip.
void AddInfoCommand(CLI::App& app);

}  // namespace cli
