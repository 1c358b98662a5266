#include "Apps/lineup/Commands/InfoCommand.h"

#include <lineup/Clip.h>
#include <lineup/Error.h>
#include <lineup/Validation.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Reports/ClipText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
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

// What a plug-in refuses to say is left out.
template <class Ask>
auto Answer(Ask ask) -> std::optional<decltype(ask())> {
    try {
        return ask();
    } catch (const lineup::Error&) {
        return std::nullopt;
    }
}

using Rows = std::vector<std::pair<const char*, std::string>>;

std::string CommaList(const std::vector<std::string>& texts) {
    return texts.empty() ? "none listed" : fmt::format("{}", fmt::join(texts, ", "));
}

// Each tells the same twice: as the rows of a table, and as JSON.
void TellPlugin(Rows& rows, nlohmann::ordered_json& json, const lineup::Importer& importer) {
    const zelcore::Bundle& bundle = importer.Bundle();
    const std::vector<std::string> fileTypes = Texts(importer.FileTypes(), FileTypeText);
    const std::vector<std::string> pixelFormats = Texts(importer.PixelFormats(), PixelFormatText);
    const auto settingsBytes = Answer([&] { return importer.SettingsSize(); });
    rows = {{"Plug-in", fmt::format("{} {}", bundle.Identifier(), bundle.Version())},
            {"Bundle", BundlePath(importer)},
            {"File types", CommaList(fileTypes)},
            {"Pixel formats", CommaList(pixelFormats)}};
    json["plugin"] = {
        {"bundle", BundlePath(importer)}, {"identifier", bundle.Identifier()}, {"version", bundle.Version()},
        {"fileTypes", fileTypes},         {"pixelFormats", pixelFormats},      {"settingsBytes", nullptr},
    };
    if (settingsBytes) {
        json["plugin"]["settingsBytes"] = *settingsBytes;
    }
}

void TellClip(Rows& rows, nlohmann::ordered_json& json, const lineup::Clip& clip) {
    rows.insert(rows.end(), {{"Picture", "colour bars, any size; the same in every frame"},
                             {"Sound", SoundText(clip)},
                             {"Signal", SignalText(clip)},
                             {"Length", LengthText(clip)}});
    json["clip"] = ClipJson(clip);
}

// Of another plug-in's clip nothing is known but what it says of a new one.
void TellForeignClip(Rows& rows, nlohmann::ordered_json& json, const lineup::Importer& importer) {
    const auto bytes = json["plugin"]["settingsBytes"];
    rows.emplace_back("Settings", bytes.is_null() ? "not said" : fmt::format("{} bytes of its own", bytes.dump()));
    const auto clip = Answer([&] { return importer.Describe(nullptr, lineup::Clip::kHostSampleRate); });
    rows.emplace_back("Picture", clip ? (clip->hasVideo ? "any size" : "none") : "not described without settings");
    rows.emplace_back("Sound", clip ? SoundText(*clip) : "not described without settings");
    if (clip && clip->hasAudio) {
        rows.emplace_back("Length", LengthText(*clip));
    }
    json["clip"] = clip ? ClipJson(*clip) : nlohmann::ordered_json();
}

void RunInfo(const InfoOptions& options) {
    const auto importer = options.common.LoadImporter();
    Rows rows;
    nlohmann::ordered_json json;
    TellPlugin(rows, json, *importer);
    if (lineup::validation::IsBarsAndTone(importer->Bundle().Identifier(), importer->FileTypes())) {
        TellClip(rows, json, lineup::Clip(importer, options.common.Settings(*importer)));
    } else {
        options.common.RefuseSound(*importer);
        TellForeignClip(rows, json, *importer);
    }
    if (options.json) {
        fmt::print("{}\n", json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
        return;
    }
    for (const auto& [name, value] : rows) {
        fmt::print("{:<14}{}\n", name, value);
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
