#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup render`: a clip as a media file.
void AddRenderCommand(CLI::App& app);

}  // namespace cli
