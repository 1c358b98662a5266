#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup validate`: puts a bundle's promises to the test, one process a check.
void AddValidateCommand(CLI::App& app);

}  // namespace cli
