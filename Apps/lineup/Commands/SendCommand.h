#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup send`: a clip as a stream that keeps running.
void AddSendCommand(CLI::App& app);

}  // namespace cli
