#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup check`: says what a path did to the line-up in recordings.
void AddCheckCommand(CLI::App& app);

}  // namespace cli
