#include "Apps/lineup/RenderCommand.h"

#include "Apps/lineup/CommonOptions.h"
#include "Apps/lineup/Interrupt.h"
#include "Apps/lineup/PictureOptions.h"
#include "Apps/lineup/ProgressBar.h"
#include "Apps/lineup/ReportText.h"
#include "Apps/lineup/Values.h"
#include "Host/Lineup/Clip.h"
#include "Host/Lineup/Export/Exporter.h"
#include "Host/Lineup/Export/FormatTable.h"
#include "Host/Lineup/Idents.h"

#include <fmt/format.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

using zelmediatypes::TickTime;

namespace cli {

namespace {

constexpr const char* kTime = "Time";
constexpr const char* kFile = "File";

struct RenderOptions {
    CommonOptions common;
    PictureOptions picture;
    std::string target;
    std::string frameRate = "25";
    std::optional<std::string> duration;
    std::optional<double> cycles;
    std::string start = "0";
    std::optional<std::string> timecode;
    std::string videoCodec;
    std::string audioCodec;
    bool monoTracks = false;
    bool overwrite = false;
    bool quiet = false;
    bool json = false;
};

// The length asked for: a time, whole cycles of the sequence, or what the plug-in says of the clip.
TickTime Duration(const RenderOptions& options, const lineup::Clip& clip) {
    if (options.cycles) {
        const lineup::Ident* const ident = clip.Settings() ? lineup::FindIdent(*clip.Settings()) : nullptr;
        if (ident == nullptr) {
            throw lineup::UsageError("cycles", fmt::format("{}", *options.cycles),
                                     "counts the cycles of an ident: choose one, or give a duration instead");
        }
        constexpr double kMostCycles = 100000;
        if (*options.cycles < 1 || *options.cycles > kMostCycles || *options.cycles != std::floor(*options.cycles)) {
            throw lineup::UsageError("cycles", fmt::format("{}", *options.cycles),
                                     fmt::format("must be a whole number from 1 to {}", kMostCycles));
        }
        return TickTime(ident->cycleTicks * static_cast<std::int64_t>(*options.cycles));
    }
    if (options.duration) {
        const TickTime duration = ParseTime("duration", *options.duration);
        if (duration <= zelmediatypes::kTime_Zero) {
            throw lineup::UsageError("duration", *options.duration, "must be above 0");
        }
        return duration;
    }
    return zelmediatypes::FrameRateFromHz(clip.SampleRate()) * clip.DurationSamples();
}

// Whole frames in a file with a picture, samples in one without. At least one of either.
std::int64_t DurationUnits(const RenderOptions& options, const lineup::Clip& clip, lineup::Rational frameRate) {
    const lineup::FileFormat* const format = lineup::FindFileFormat(options.target);
    const bool hasPicture = format == nullptr || !format->videoCodecs.empty();
    const lineup::Rational rate = hasPicture ? frameRate : lineup::Rational{static_cast<int>(clip.SampleRate()), 1};
    return std::max<std::int64_t>(1, NearestIndex(Duration(options, clip), rate));
}

lineup::ExportSettings MakeExportSettings(const RenderOptions& options, const lineup::Clip& clip) {
    lineup::ExportSettings settings;
    const Size size = options.picture.ParsedSize();
    settings.target = options.target;
    settings.width = size.width;
    settings.height = size.height;
    settings.card = options.picture.card;
    settings.frameRate = ParseFrameRate(options.frameRate);
    settings.startSample = NearestIndex(ParseTime("start", options.start), {static_cast<int>(clip.SampleRate()), 1});
    settings.duration = DurationUnits(options, clip, settings.frameRate);
    settings.videoCodec = options.videoCodec;
    settings.audioCodec = options.audioCodec;
    if (options.timecode) {
        settings.timecode.emplace(*options.timecode, settings.frameRate);
    }
    settings.monoTracks = options.monoTracks;
    settings.overwrite = options.overwrite;
    return settings;
}

void RunRender(const RenderOptions& options) {
    const auto importer = options.common.LoadImporter();
    const lineup::Clip clip(importer, options.common.Settings(*importer));
    const lineup::ExportSettings settings = MakeExportSettings(options, clip);

    WatchForInterrupts();
    lineup::ExportReport report;
    {
        ProgressBar bar(settings.target.filename().string(), !options.quiet && !options.json);
        report = Export(clip, settings, [&bar](std::int64_t done, std::int64_t total) {
            bar.Show(done, total);
            return !Interrupted();
        });
    }
    if (options.json) {
        fmt::print("{}\n", ReportJson(report));
    } else if (!options.quiet) {
        fmt::print("{}", ReportText(report));
    }
}

void AddTimeOptions(CLI::App& command, RenderOptions& options) {
    command.add_option("--fps", options.frameRate, "Frames a second: 24000/1001, 25, 30000/1001, 50, ...")
        ->type_name("RATE")
        ->capture_default_str()
        ->group(kTime);
    CLI::Option* const duration =
        command.add_option("--duration", options.duration, "How long: seconds, MM:SS or HH:MM:SS [5]")
            ->type_name("TIME")
            ->group(kTime);
    AddNumber(command, "cycles", options.cycles, "How long: whole cycles of the ident", "cycles")
        ->group(kTime)
        ->excludes(duration);
    command.add_option("--start", options.start, "Clip time at which the file begins")
        ->type_name("TIME")
        ->capture_default_str()
        ->group(kTime);
    command.add_option("--timecode", options.timecode, "Time code of the first frame; ';' before FF is drop frame")
        ->type_name("HH:MM:SS:FF")
        ->group(kTime);
}

void AddFileOptions(CLI::App& command, RenderOptions& options) {
    command.add_option("--video-codec", options.videoCodec, "Picture codec; see below")
        ->type_name("NAME")
        ->group(kFile);
    command.add_option("--audio-codec", options.audioCodec, "Sound codec; see below")->type_name("NAME")->group(kFile);
    command.add_flag("--mono-tracks", options.monoTracks, "One mono track a channel instead of one for all")
        ->group(kFile);
    command.add_flag("-y,--overwrite", options.overwrite, "Replace the file if it is there already")->group(kFile);
}

}  // namespace

void AddRenderCommand(CLI::App& app) {
    auto options = std::make_shared<RenderOptions>();
    CLI::App* const command = app.add_subcommand("render", "Write a clip as a media file");
    command->add_option("OUT", options->target, "The file to write; its extension says which kind")->required();
    AddPictureOptions(*command, options->picture);
    AddTimeOptions(*command, *options);
    AddToneOptions(*command, options->common);
    AddFileOptions(*command, *options);
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    command->add_flag("--json", options->json, "Say what was written as JSON");
    AddPluginOption(*command, options->common);
    command->footer(FormatHelp());
    command->callback([options] { RunRender(*options); });
}

}  // namespace cli
