#pragma once

#include <lineup/Importer.h>
#include <lineup/ToneChoice.h>

#include <CLI/App.hpp>

#include <memory>
#include <optional>
#include <string>

namespace cli {

/// The options that every command about a clip shares.
struct CommonOptions {
    std::string bundleFolder;  ///< empty: the bundle on the search path
    std::string settingsFile;  ///< empty: the sound is what `tone` says
    lineup::ToneChoice tone;

    /// Loads the plug-in.
    [[nodiscard]] std::shared_ptr<const lineup::Importer> LoadImporter() const;

    /// The settings of the clip that was chosen. Throws UsageError for a choice that cannot be, and Error
    /// for a settings file that cannot be read.
    [[nodiscard]] lineup::BarsAndToneInfo Settings(const lineup::Importer& importer) const;

    /// Throws UsageError when a sound was chosen: another plug-in's settings are its own, and cannot be made from it.
    void RefuseSound(const lineup::Importer& importer) const;
};

/// Adds --plugin.
void AddPluginOption(CLI::App& command, CommonOptions& options);

/// Adds --channels and --sample-rate.
void AddLayoutOptions(CLI::App& command, CommonOptions& options);

/// Adds the options that choose a clip's sound, and --settings, which replaces them all.
void AddToneOptions(CLI::App& command, CommonOptions& options);

/// Adds an option that takes a number; any other text is a UsageError that says `expected`.
CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::optional<double>& value,
                       const std::string& help, const std::string& unit);

}  // namespace cli
