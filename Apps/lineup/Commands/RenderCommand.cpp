#include "Apps/lineup/Commands/RenderCommand.h"

#include <lineup/Clip.h>
#include <lineup/Exporter.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Options/PictureOptions.h"
#include "Apps/lineup/Options/TimeOptions.h"
#include "Apps/lineup/Options/Values.h"
#include "Apps/lineup/Reports/ReportText.h"
#include "Apps/lineup/Terminal/Interrupt.h"
#include "Apps/lineup/Terminal/ProgressBar.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace cli {

namespace {

constexpr const char* kFile = "File";

struct RenderOptions {
    CommonOptions common;
    PictureOptions picture;
    lineup::Scan scan = lineup::Scan::Progressive;
    std::string target;
    std::string frameRate = "25";
    TimeOptions time;
    std::optional<std::string> timecode;
    std::string videoCodec;
    std::string audioCodec;
    bool monoTracks = false;
    bool overwrite = false;
    bool doNotWait = false;
    bool quiet = false;
    bool json = false;
};

// The whole frames or samples of a time, one at least.
std::int64_t CountAt(lineup::Rational rate, zelmediatypes::TickTime time) {
    return std::max<std::int64_t>(1, NearestIndex(time, rate));
}

lineup::ExportSettings MakeExportSettings(const RenderOptions& options, const lineup::Clip& clip) {
    lineup::ExportSettings settings;
    const Size size = options.picture.ParsedSize();
    settings.target = options.target;
    settings.width = size.width;
    settings.height = size.height;
    settings.card = options.picture.card;
    settings.aspect = options.picture.aspect;
    settings.scan = options.scan;
    settings.frameRate = ParseFrameRate(options.frameRate);
    settings.startSample = options.time.StartSample(clip);
    const auto duration = options.time.Duration(clip).value_or(DescribedDuration(clip));
    settings.frames = CountAt(settings.frameRate, duration);
    settings.samples = CountAt({static_cast<int>(clip.SampleRate()), 1}, duration);
    settings.videoCodec = options.videoCodec;
    settings.audioCodec = options.audioCodec;
    if (options.timecode) {
        settings.timecode.emplace(*options.timecode, settings.frameRate);
    }
    settings.monoTracks = options.monoTracks;
    settings.overwrite = options.overwrite;
    settings.disk = options.doNotWait ? lineup::Disk::DoNotWait : lineup::Disk::Wait;
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
            return Interrupted() == 0;
        });
    }
    if (options.json) {
        fmt::print("{}\n", ReportJson(report));
    } else if (!options.quiet) {
        fmt::print("{}", ReportText(report));
    }
}

void AddFrameTimeOptions(CLI::App& command, RenderOptions& options) {
    command.add_option("--fps", options.frameRate, "Frames a second: 24000/1001, 25, 30000/1001, 50, ...")
        ->type_name("RATE")
        ->capture_default_str()
        ->group(kTimeGroup);
    AddTimeOptions(command, options.time, "5");
    command.add_option("--timecode", options.timecode, "Time code of the first frame; ';' before FF is drop frame")
        ->type_name("HH:MM:SS:FF")
        ->group(kTimeGroup);
}

void AddFileOptions(CLI::App& command, RenderOptions& options) {
    command.add_option("--video-codec", options.videoCodec, "Picture codec; see below")
        ->type_name("NAME")
        ->group(kFile);
    command.add_option("--audio-codec", options.audioCodec, "Sound codec; see below")->type_name("NAME")->group(kFile);
    command.add_flag("--mono-tracks", options.monoTracks, "One mono track a channel instead of one for all")
        ->group(kFile);
    command.add_flag("-y,--overwrite", options.overwrite, "Replace the file if it is there already")->group(kFile);
    command
        .add_flag("--no-sync", options.doNotWait,
                  "Do not wait until the file is on the disk; faster, but a crash of the machine may lose it")
        ->group(kFile);
}

}  // namespace

void AddRenderCommand(CLI::App& app) {
    auto options = std::make_shared<RenderOptions>();
    CLI::App* const command = app.add_subcommand("render", "Write a clip as a media file");
    command->add_option("OUT", options->target, "The file to write; its extension says which kind")->required();
    AddPictureOptions(*command, options->picture);
    AddScanOption(*command, options->scan);
    AddFrameTimeOptions(*command, *options);
    AddToneOptions(*command, options->common);
    AddFileOptions(*command, *options);
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    command->add_flag("--json", options->json, "Say what was written as JSON");
    AddPluginOption(*command, options->common);
    command->footer(FormatHelp());
    command->callback([options] { RunRender(*options); });
}

}  // namespace cli
