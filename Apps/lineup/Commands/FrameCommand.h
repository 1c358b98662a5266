#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup frame`: the card as a still picture.
void AddFrameCommand(CLI::App& app);

}  // namespace cli
