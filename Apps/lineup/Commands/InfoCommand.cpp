#include "Apps/lineup/Commands/InfoCommand.h"

#include <lineup/Clip.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Reports/ClipText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace cli {

namespace {

struct InfoOptions {
    CommonOptions common;
    bool json = false;
};

std::vector<std::string> Texts(const std::vector<std::uint32_t>& codes, std::string (*text)(std::uint32_t)) {
    std::vector<std::string> texts;
    std::ranges::transform(codes, std::back_inserter(texts), text);
    return texts;
}

std::string BundlePath(const lineup::Importer& importer) {
    return std::filesystem::weakly_canonical(importer.Bundle().Folder()).string();
}

void PrintJson(const lineup::Importer& importer, const lineup::Clip& clip) {
    const nlohmann::ordered_json plugin = {
        {"bundle", BundlePath(importer)},
        {"identifier", importer.Bundle().Identifier()},
        {"version", importer.Bundle().Version()},
        {"fileTypes", Texts(importer.FileTypes(), FileTypeText)},
        {"pixelFormats", Texts(importer.PixelFormats(), PixelFormatText)},
        {"settingsBytes", importer.SettingsSize()},
    };
    const nlohmann::ordered_json report = {{"plugin", plugin}, {"clip", ClipJson(clip)}};
    fmt::print("{}\n", report.dump(2));
}

void PrintTable(const lineup::Importer& importer, const lineup::Clip& clip) {
    const auto row = [](const char* name, const std::string& value) { fmt::print("{:<14}{}\n", name, value); };
    row("Plug-in", fmt::format("{} {}", importer.Bundle().Identifier(), importer.Bundle().Version()));
    row("Bundle", BundlePath(importer));
    row("File types", fmt::format("{}", fmt::join(Texts(importer.FileTypes(), FileTypeText), ", ")));
    row("Pixel formats", fmt::format("{}", fmt::join(Texts(importer.PixelFormats(), PixelFormatText), ", ")));
    row("Picture", "colour bars, any size; the same in every frame");
    row("Sound", SoundText(clip));
    row("Signal", SignalText(clip));
    row("Length", LengthText(clip));
}

void RunInfo(const InfoOptions& options) {
    const auto importer = options.common.LoadImporter();
    const lineup::Clip clip(importer, options.common.Settings(*importer));
    if (options.json) {
        PrintJson(*importer, clip);
    } else {
        PrintTable(*importer, clip);
    }
}

}  // namespace

void AddInfoCommand(CLI::App& app) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* const command = app.add_subcommand("info", "Show what the plug-in says of itself and of a clip");
    AddToneOptions(*command, options->common);
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    AddPluginOption(*command, options->common);
    command->callback([options] { RunInfo(*options); });
}

}  // namespace cli
