#pragma once

#include <lineup/CheckSettings.h>
#include "Apps/lineup/Options/CommonOptions.h"

#include <CLI/App.hpp>

#include <optional>
#include <string>
#include <vector>

namespace cli {

/// What `lineup check` is to look for, as a person types it.
struct CheckOptions {
    CommonOptions common;
    std::string expect = "auto";
    std::string card = "auto";
    std::optional<double> frequencyHz;
    std::optional<double> levelDb;
    std::optional<std::string> channels;
    std::string settingsFile;
    std::optional<std::string> from;
    std::optional<std::string> length;
    std::vector<std::string> tolerances;  ///< "NAME=VALUE"

    /// What it comes to. Throws UsageError for what cannot be, and Error for a settings file that cannot be read.
    [[nodiscard]] lineup::CheckSettings Settings() const;
};

/// Adds all of them.
void AddCheckOptions(CLI::App& command, CheckOptions& options);

/// The names of all tolerances, with what each is, a line each.
[[nodiscard]] std::string ToleranceHelp();

}  // namespace cli
