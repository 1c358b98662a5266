#include "Apps/lineup/CommonOptions.h"

#include "Apps/lineup/Values.h"
#include "Host/Lineup/BundleSearch.h"
#include "Host/Lineup/ChannelLayout.h"
#include "Host/Lineup/Idents.h"

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

}  // namespace

std::shared_ptr<const lineup::Importer> CommonOptions::LoadImporter() const {
    return std::make_shared<lineup::Importer>(bundleFolder.empty() ? lineup::FindBundle()
                                                                   : std::filesystem::path(bundleFolder));
}

void AddPluginOption(CLI::App& command, CommonOptions& options) {
    command.add_option("--plugin", options.bundleFolder, "Use the plug-in in this bundle instead of our own")
        ->type_name("FOLDER");
}

CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::optional<double>& value,
                       const std::string& help, const std::string& unit) {
    const auto parse = [name, unit, &value](const std::string& text) {
        value = ParseNumber(name, text, fmt::format("must be a number of {}", unit));
    };
    return command.add_option_function<std::string>(fmt::format("--{}", name), parse, help)->type_name(unit);
}

void AddToneOptions(CLI::App& command, CommonOptions& options) {
    lineup::ToneChoice& tone = options.tone;
    AddNumber(command, "frequency", tone.frequencyHz, "Frequency of the steady tone, 1 to half the sample rate [1000]",
              "Hz")
        ->group(kSound);
    AddNumber(command, "level", tone.levelDb,
              "Peak level of the steady tone, -300 (silence) to 0 (full scale) [-12.04, a gain of 0.25]", "dBFS")
        ->group(kSound);
    command.add_option("--channels", tone.channels, "Channel layout [stereo, or as the ident needs]")
        ->type_name(Names(lineup::ChannelLayouts()))
        ->group(kSound);
    AddNumber(command, "sample-rate", tone.sampleRateHz, "Sample rate, 8000 to 384000 [48000]", "Hz")->group(kSound);
    command.add_option("--ident", tone.ident, "Play a channel-identification sequence instead of a steady tone")
        ->type_name(Names(lineup::Idents()))
        ->group(kSound);
}

}  // namespace cli
