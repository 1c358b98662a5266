#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup peaks`: a clip's waveform overview as a picture or as numbers.
void AddPeaksCommand(CLI::App& app);

}  // namespace cli
