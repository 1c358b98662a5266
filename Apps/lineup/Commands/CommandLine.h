#pragma once

#include <CLI/App.hpp>

#include <memory>

namespace cli {

/// Everything that the program understands: its commands, their options and their help.
[[nodiscard]] std::unique_ptr<CLI::App> MakeCommandLine();

}  // namespace cli
