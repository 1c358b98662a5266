#include "Apps/lineup/Options/CommonOptions.h"

#include <lineup/BundleSearch.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/Idents.h>
#include <lineup/Limits.h>
#include <lineup/SettingsFile.h>
#include <lineup/UsageError.h>
#include "Apps/lineup/Options/Values.h"

#include <fmt/format.h>

#include <filesystem>
#include <span>

namespace cli {

namespace {

constexpr const char* kSound = "Sound";

template <class Row>
std::string Names(std::span<const Row> rows) {
    std::string names;
    for (const Row& row : rows) {
        names += names.empty() ? "" : "|";
        names += row.name;
    }
    return names;
}

// The first of the tone options that was given, or "".
std::string GivenToneOption(const lineup::ToneChoice& tone) {
    if (tone.frequencyHz) {
        return "frequency";
    }
    if (tone.levelDb) {
        return "level";
    }
    if (tone.channels) {
        return "channels";
    }
    if (tone.sampleRateHz) {
        return "sample-rate";
    }
    return tone.ident ? "ident" : "";
}

}  // namespace

std::shared_ptr<const lineup::Importer> CommonOptions::LoadImporter() const {
    return std::make_shared<lineup::Importer>(bundleFolder.empty() ? lineup::FindBundle()
                                                                   : std::filesystem::path(bundleFolder));
}

lineup::BarsAndToneInfo CommonOptions::Settings(const lineup::Importer& importer) const {
    if (settingsFile.empty()) {
        return MakeSettings(importer, tone);
    }
    const std::string other = GivenToneOption(tone);
    if (!other.empty()) {
        throw lineup::UsageError("settings", settingsFile,
                                 fmt::format("says all there is to say of the sound: leave out --{}", other));
    }
    return lineup::ReadSettings(settingsFile);
}

void CommonOptions::RefuseSound(const lineup::Importer& importer) const {
    const std::string given = settingsFile.empty() ? GivenToneOption(tone) : "settings";
    if (!given.empty()) {
        throw lineup::UsageError(
            "plugin", importer.Bundle().Folder().string(),
            fmt::format("is not Bars and Tone, and its settings are its own: leave out --{}", given));
    }
}

void AddPluginOption(CLI::App& command, CommonOptions& options) {
    command
        .add_option("--plugin", options.bundleFolder,
                    "Use the plug-in in this bundle instead of our own, wherever it lies")
        ->type_name("FOLDER");
}

CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::optional<double>& value,
                       const std::string& help, const std::string& unit) {
    const auto parse = [name, unit, &value](const std::string& text) {
        value = ParseNumber(name, text, fmt::format("must be a number of {}", unit));
    };
    return command.add_option_function<std::string>(fmt::format("--{}", name), parse, help)->type_name(unit);
}

void AddLayoutOptions(CLI::App& command, CommonOptions& options) {
    command.add_option("--channels", options.tone.channels, "Channel layout [stereo, or as the ident needs]")
        ->type_name(Names(lineup::ChannelLayouts()))
        ->group(kSound);
    AddNumber(command, "sample-rate", options.tone.sampleRateHz,
              fmt::format("Sample rate, {} to {} [{}]", lineup::kLowestSampleRateHz, lineup::kHighestSampleRateHz,
                          lineup::Clip::kHostSampleRate),
              "Hz")
        ->group(kSound);
}

void AddToneOptions(CLI::App& command, CommonOptions& options) {
    lineup::ToneChoice& tone = options.tone;
    AddNumber(command, "frequency", tone.frequencyHz,
              "Frequency of the steady tone, from 1 on, below half the sample rate [1000]", "Hz")
        ->group(kSound);
    AddNumber(command, "level", tone.levelDb,
              "Peak level of the steady tone, -300 (silence) to 0 (full scale) [-12.04, a gain of 0.25]", "dBFS")
        ->group(kSound);
    AddLayoutOptions(command, options);
    command.add_option("--ident", tone.ident, "Play a channel-identification sequence instead of a steady tone")
        ->type_name(Names(lineup::Idents()))
        ->group(kSound);
    command.add_option("--settings", options.settingsFile, "Take all of this from a file that lineup settings made")
        ->type_name("FILE")
        ->group(kSound);
}

}  // namespace cli
