#include "Apps/lineup/Commands/SettingsCommand.h"

#include <lineup/DesktopToolkit.h>
#include <lineup/Error.h>
#include <lineup/SettingsFile.h>
#include <lineup/ToneChoice.h>
#include <lineup/UsageError.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Host/Lineup/Files/TargetFile.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <string>

using zelui::ui::DialogOutcome;

namespace cli {

namespace {

struct SettingsOptions {
    CommonOptions common;
    std::string file;
    bool defaults = false;
    bool overwrite = false;
    bool quiet = false;
};

bool IsThere(const SettingsOptions& options) {
    std::error_code error;
    return std::filesystem::exists(options.file, error);
}

void Say(const SettingsOptions& options, const std::string& sentence) {
    if (!options.quiet) {
        fmt::print("{}\n", sentence);
    }
}

void RefuseLayoutOfOldFile(const SettingsOptions& options) {
    const lineup::ToneChoice& tone = options.common.tone;
    if (tone.channels || tone.sampleRateHz) {
        const std::string option = tone.channels ? "channels" : "sample-rate";
        const std::string value = tone.channels ? *tone.channels : fmt::format("{}", *tone.sampleRateHz);
        throw lineup::UsageError(option, value,
                                 fmt::format("is for a new file, and {} is there already: leave it out, or make a new "
                                             "one in its place with --defaults --overwrite",
                                             options.file));
    }
}

void WriteDefaults(const SettingsOptions& options) {
    const auto importer = options.common.LoadImporter();
    const lineup::BarsAndToneInfo settings = options.common.Settings(*importer);
    WriteSettings(options.file, settings, options.overwrite);
    Say(options, fmt::format("wrote {}: default settings", options.file));
}

// The plug-in's dialog allows half the sample rate too.
void NoteTone(const lineup::BarsAndToneInfo& settings) {
    try {
        lineup::CheckTone(settings);
    } catch (const lineup::UsageError& refusal) {
        fmt::print(stderr, "lineup: note: no file can be made of these settings: {}\n", refusal.what());
    }
}

void EditInDialog(const SettingsOptions& options) {
    const bool isThere = IsThere(options);
    if (isThere) {
        RefuseLayoutOfOldFile(options);
    }
    const auto importer = options.common.LoadImporter();
    lineup::BarsAndToneInfo settings =
        isThere ? lineup::ReadSettings(options.file) : options.common.Settings(*importer);
    (void)lineup::TargetFile(options.file, isThere);  // tried first, so that nobody chooses settings in vain
    const lineup::DesktopToolkit toolkit;
    importer->EditSettings(settings);
    switch (toolkit.LastOutcome()) {
        case DialogOutcome::Accepted:
            WriteSettings(options.file, settings, isThere);
            Say(options, fmt::format("wrote {}", options.file));
            NoteTone(settings);
            break;
        case DialogOutcome::Left:
            Say(options, fmt::format("cancelled: {} {}", options.file, isThere ? "is as it was" : "was not made"));
            break;
        case DialogOutcome::NoDialog:
            throw lineup::Error(fmt::format("cannot edit {}: the plug-in at {} has shown no dialog", options.file,
                                            importer->Bundle().Folder().string()));
    }
}

void RunSettings(const SettingsOptions& options) {
    if (options.defaults) {
        WriteDefaults(options);
    } else {
        EditInDialog(options);
    }
}

}  // namespace

void AddSettingsCommand(CLI::App& app) {
    auto options = std::make_shared<SettingsOptions>();
    CLI::App* const command = app.add_subcommand("settings", "Choose a clip's tone in a dialog and keep it in a file");
    command->add_option("FILE", options->file, "The settings file to edit, or to make")->required();
    command->add_flag("--defaults", options->defaults, "Make a new file with default settings; show no dialog");
    command->add_flag("-y,--overwrite", options->overwrite, "With --defaults: replace the file if it is there already");
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    AddLayoutOptions(*command, options->common);
    AddPluginOption(*command, options->common);
    command->callback([options] { RunSettings(*options); });
}

}  // namespace cli
