#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup settings`: makes a settings file, or edits one, in the plug-in's dialog.
void AddSettingsCommand(CLI::App& app);

}  // namespace cli
