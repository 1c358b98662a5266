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

// What is told, as a table and as JSON.
struct Told {
    std::vector<std::pair<const char*, std::string>> rows;
    nlohmann::ordered_json json;

    void Print(bool asJson) const {
        if (asJson) {
            fmt::print("{}\n", json.dump(2));
            return;
        }
        for (const auto& [name, value] : rows) {
            fmt::print("{:<14}{}\n", name, value);
        }
    }
};

std::string ListText(const std::vector<std::string>& texts) {
    return texts.empty() ? "none listed" : fmt::format("{}", fmt::join(texts, ", "));
}

Told TellPlugin(const lineup::Importer& importer) {
    const zelcore::Bundle& bundle = importer.Bundle();
    const std::vector<std::string> fileTypes = Texts(importer.FileTypes(), FileTypeText);
    const std::vector<std::string> pixelFormats = Texts(importer.PixelFormats(), PixelFormatText);
    const auto settingsBytes = Answer([&] { return importer.SettingsSize(); });
    Told told;
    told.rows = {{"Plug-in", fmt::format("{} {}", bundle.Identifier(), bundle.Version())},
                 {"Bundle", BundlePath(importer)},
                 {"File types", ListText(fileTypes)},
                 {"Pixel formats", ListText(pixelFormats)}};
    told.json["plugin"] = {
        {"bundle", BundlePath(importer)}, {"identifier", bundle.Identifier()}, {"version", bundle.Version()},
        {"fileTypes", fileTypes},         {"pixelFormats", pixelFormats},      {"settingsBytes", nullptr},
    };
    if (settingsBytes) {
        told.json["plugin"]["settingsBytes"] = *settingsBytes;
    }
    return told;
}

void TellClip(Told& told, const lineup::Clip& clip) {
    told.rows.insert(told.rows.end(), {{"Picture", "colour bars, any size; the same in every frame"},
                                       {"Sound", SoundText(clip)},
                                       {"Signal", SignalText(clip)},
                                       {"Length", LengthText(clip)}});
    told.json["clip"] = ClipJson(clip);
}

// Of another plug-in's clip nothing is known but what it says of a new one.
void TellForeignClip(Told& told, const lineup::Importer& importer) {
    const auto bytes = told.json["plugin"]["settingsBytes"];
    told.rows.emplace_back("Settings", bytes.is_null() ? "not said" : fmt::format("{} bytes of its own", bytes.dump()));
    const auto clip = Answer([&] { return importer.Describe(nullptr, lineup::Clip::kHostSampleRate); });
    told.rows.emplace_back("Picture", clip ? (clip->hasVideo ? "any size" : "none") : "not described without settings");
    told.rows.emplace_back("Sound", clip ? SoundText(*clip) : "not described without settings");
    if (clip && clip->hasAudio) {
        told.rows.emplace_back("Length", LengthText(*clip));
    }
    told.json["clip"] = clip ? ClipJson(*clip) : nlohmann::ordered_json();
}

void RunInfo(const InfoOptions& options) {
    const auto importer = options.common.LoadImporter();
    Told told = TellPlugin(*importer);
    if (lineup::validation::IsBarsAndTone(importer->Bundle().Identifier(), importer->FileTypes())) {
        TellClip(told, lineup::Clip(importer, options.common.Settings(*importer)));
    } else {
        options.common.RefuseSound(*importer);
        TellForeignClip(told, *importer);
    }
    told.Print(options.json);
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
