#include "Apps/lineup/Commands/RenderCommand.h"

#include <lineup/Clip.h>
#include <lineup/Exporter.h>
#include <lineup/FormatTable.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Options/LengthOptions.h"
#include "Apps/lineup/Options/PictureOptions.h"
#include "Apps/lineup/Options/Values.h"
#include "Apps/lineup/Reports/ReportText.h"
#include "Apps/lineup/Terminal/Interrupt.h"
#include "Apps/lineup/Terminal/ProgressBar.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>

namespace cli {

namespace {

constexpr const char* kFile = "File";
constexpr const char* kStandardOutput = "-";

struct RenderOptions {
    const CLI::App* command = nullptr;
    CommonOptions common;
    PictureOptions picture;
    lineup::Scan scan = lineup::Scan::Progressive;
    std::string target;
    std::string format;
    std::string frameRate = "25";
    LengthOptions length;
    std::optional<std::string> timecode;
    std::string videoCodec;
    std::string audioCodec;
    std::string dither = "none";
    bool monoTracks = false;
    bool overwrite = false;
    bool doNotWait = false;
    bool reproducible = false;
    bool quiet = false;
    bool json = false;
};

// What builds elsewhere say too: a moment for all that is made, so that the same bytes come of the same sources.
std::optional<std::int64_t> SourceDate() {
    const char* const text = std::getenv("SOURCE_DATE_EPOCH");  // NOLINT(concurrency-mt-unsafe): nothing sets it
    if (text == nullptr) {
        return std::nullopt;
    }
    std::int64_t seconds = 0;
    const char* const end = text + std::strlen(text);
    if (const auto [stop, error] = std::from_chars(text, end, seconds); error != std::errc() || stop != end) {
        throw lineup::Error(fmt::format("SOURCE_DATE_EPOCH is {}: it must be whole seconds since 1970", text));
    }
    return seconds;
}

lineup::Dither ParseDither(const std::string& text) {
    if (text != "none" && text != "tpdf") {
        throw lineup::UsageError("dither", text, "must be none or tpdf");
    }
    return text == "tpdf" ? lineup::Dither::Triangular : lineup::Dither::None;
}

int RequirePipe(const RenderOptions& options) {
    if (options.format.empty()) {
        throw lineup::UsageError("output", kStandardOutput,
                                 fmt::format("needs --format {}", fmt::join(lineup::StreamedFormats(), ", ")));
    }
    if (isatty(STDOUT_FILENO) != 0) {
        throw lineup::UsageError("output", kStandardOutput, "is a terminal here: send it into a pipe or a file");
    }
    return STDOUT_FILENO;
}

// A file without a picture has no use for what says how one looks, and for frames only where something counts them.
void RefusePictureOptions(const RenderOptions& options) {
    const lineup::FileFormat* const format =
        lineup::FindFileFormat(options.format.empty() ? options.target : "x." + options.format);
    if (format == nullptr || !format->videoCodecs.empty()) {
        return;
    }
    const std::string has = fmt::format("a .{} file has no picture", format->extension);
    for (const char* const name : {"--size", "--card", "--aspect", "--scan"}) {
        if (const CLI::Option* const option = options.command->get_option_no_throw(name);
            option != nullptr && option->count() > 0) {
            throw lineup::UsageError(name + 2, option->as<std::string>(), has);
        }
    }
    if (options.command->count("--fps") > 0 && !options.timecode && !options.length.CountsFrames()) {
        throw lineup::UsageError("fps", options.frameRate,
                                 has +
                                     ": frames count there only with --timecode, --frames, "
                                     "--until or a --duration of HH:MM:SS:FF");
    }
}

lineup::ExportSettings MakeExportSettings(const RenderOptions& options, const lineup::Clip& clip) {
    RefusePictureOptions(options);
    lineup::ExportSettings settings;
    const Size size = options.picture.ParsedSize();
    settings.target = options.target;
    settings.format = options.format;
    if (options.target == kStandardOutput) {
        settings.target = "standard output";
        settings.pipe = RequirePipe(options);
    }
    settings.width = size.width;
    settings.height = size.height;
    settings.card = options.picture.card;
    settings.aspect = options.picture.aspect;
    settings.scan = options.scan;
    settings.frameRate = ParseFrameRate(options.frameRate);
    settings.startSample = options.length.time.StartSample(clip);
    settings.videoCodec = options.videoCodec;
    settings.audioCodec = options.audioCodec;
    if (options.timecode) {
        settings.timecode.emplace(*options.timecode, settings.frameRate);
    }
    settings.monoTracks = options.monoTracks;
    settings.dither = ParseDither(options.dither);
    settings.overwrite = options.overwrite;
    settings.disk = options.doNotWait ? lineup::Disk::DoNotWait : lineup::Disk::Wait;
    settings.date = SourceDate();
    settings.reproducible = options.reproducible || settings.date.has_value();
    return settings;
}

void RunRender(const RenderOptions& options) {
    const auto importer = options.common.LoadImporter();
    const lineup::Clip clip(importer, options.common.Settings(*importer));
    lineup::ExportSettings settings = MakeExportSettings(options, clip);
    const FileLength length = options.length.Length(clip, settings.frameRate, settings.timecode);
    settings.frames = length.frames;
    settings.samples = length.samples;
    settings.blackFrames = length.blackFrames;
    settings.blackSamples = length.blackSamples;

    constexpr int kSecondsToStop = 1;
    WatchForInterrupts(kSecondsToStop);
    lineup::ExportReport report;
    {
        ProgressBar bar(settings.target.filename().string(), !options.quiet && !options.json);
        report = Export(clip, settings, [&bar](std::int64_t done, std::int64_t total) {
            bar.Show(done, total);
            return Interrupted() == 0;
        });
    }
    FILE* const out = settings.pipe ? stderr : stdout;
    if (options.json) {
        fmt::print(out, "{}\n", ReportJson(report, length.cycleSamples));
    } else if (!options.quiet) {
        fmt::print(out, "{}", ReportText(report, length.cycleSamples));
    }
}

void AddFrameTimeOptions(CLI::App& command, RenderOptions& options) {
    command.add_option("--fps", options.frameRate, "Frames a second: 24000/1001, 25, 30000/1001, 50, ...")
        ->type_name("RATE")
        ->capture_default_str()
        ->group(kTimeGroup);
    AddLengthOptions(command, options.length);
    command.add_option("--timecode", options.timecode, "Time code of the first frame; ';' before FF is drop frame")
        ->type_name("HH:MM:SS:FF")
        ->group(kTimeGroup);
}

void AddFileOptions(CLI::App& command, RenderOptions& options) {
    command
        .add_option("--format", options.format,
                    fmt::format("Kind of file, as an extension says it; for standard output: {}",
                                fmt::join(lineup::StreamedFormats(), ", ")))
        ->type_name("EXTENSION")
        ->group(kFile);
    command.add_option("--video-codec", options.videoCodec, "Picture codec; see below")
        ->type_name("NAME")
        ->group(kFile);
    command.add_option("--audio-codec", options.audioCodec, "Sound codec; see below")->type_name("NAME")->group(kFile);
    command
        .add_option("--dither", options.dither,
                    "What becomes of the error of 16 bits: none rounds, tpdf adds noise first")
        ->type_name("none|tpdf")
        ->capture_default_str()
        ->group(kFile);
    command.add_flag("--mono-tracks", options.monoTracks, "One mono track a channel instead of one for all")
        ->group(kFile);
    command
        .add_flag("--reproducible", options.reproducible,
                  "The same bytes each time: no date, no identifiers of its own; SOURCE_DATE_EPOCH asks for it too")
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
    options->command = command;
    command
        ->add_option("OUT", options->target, "The file to write; its extension says which kind; - is standard output")
        ->required();
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
