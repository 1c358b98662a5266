#include "Apps/lineup/Commands/CheckCommand.h"

#include "Apps/lineup/Commands/CheckRun.h"
#include "Apps/lineup/Commands/WatchRun.h"
#include "Apps/lineup/Options/CheckOptions.h"
#include "Apps/lineup/Reports/CheckJson.h"
#include "Apps/lineup/Reports/CheckReportFile.h"
#include "Apps/lineup/Reports/CheckText.h"
#include "Apps/lineup/Terminal/Interrupt.h"
#include "Apps/lineup/Terminal/ProgressBar.h"

#include <CLI/Error.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace cli {

namespace {

using lineup::CheckReport;
using lineup::CheckVerdict;

constexpr const char* kCheckHelp =
    "A recording is a file, - for standard input, or a URL (srt://, udp://, rtp://, http:// ...); a session "
    "description\n"
    "NAME.sdp stands for the stream of RTP in it, and rtp://...?encoding=L24&rate=48000 needs none. All its sound "
    "tracks\n"
    "count, in their order: six mono tracks are six inputs. It is decoded by a process that can reach no file, and for "
    "a\n"
    "file no network; one that cannot be read, or makes its decoder crash, is said so and does no harm.\n"
    "\n"
    "Sequences and steady tones are examined: which channel arrives where, polarity, levels, delays, speed and how "
    "they\n"
    "move, noise, hum, harmonics, clipping, DC and bits, dropouts, lost or repeated samples, and clicks. Of "
    "the\n"
    "picture, the card is found wherever it lies: matrix, range, gain, lift, gamma, saturation, hue, what the file "
    "says of\n"
    "them, place and scale, bits, softness, noise, and frames that differ. A single picture will do. Right means that\n"
    "nothing was found of what is looked for.\n"
    "\n"
    "Examples:\n"
    "  lineup check from-truck.mxf                       find out what is in it, and what is wrong with it\n"
    "  lineup check from-truck.mxf --expect blits        say so too if it is another sequence\n"
    "  lineup check srt://0.0.0.0:9000?mode=listener --for 60\n"
    "  ffmpeg -f alsa -i hw:1 -t 30 -f wav - | lineup check -\n"
    "  lineup check card.png --card hd                   a single picture\n"
    "  lineup check *.mov --json                         a line of JSON for each\n"
    "  lineup check udp://239.1.2.3:5000 --watch         a feed, until Ctrl-C or for as long as it comes\n"
    "  lineup check take.wav --report take.html          with a picture of what was found over what was due\n"
    "  lineup check take.wav --report check.xml --quiet  for a server that takes JUnit XML\n"
    "\n";

constexpr const char* kExitHelp =
    "\n"
    "Exit status: 0 nothing wrong, 1 faults found, 2 used wrongly, 3 cannot be told: no line-up found, too little of\n"
    "one, or nothing that can be read. Of several recordings, 1 if one has faults, else 3 if one cannot be told.";

enum Status : int { kRight = 0, kFaults = 1, kCannotTell = 3 };

struct CommandOptions {
    CheckOptions check;
    std::vector<std::string> recordings;
    std::string report;
    bool json = false;
    bool quiet = false;
    bool watch = false;
};

bool WantsColour() {
    const char* const refusal = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): nothing sets it
    return isatty(STDOUT_FILENO) != 0 && (refusal == nullptr || *refusal == '\0');
}

// Each report is seen as soon as it is there.
void Print(const CheckReport& report, const CommandOptions& options, bool isFirst) {
    if (options.json) {
        fmt::print("{}\n", CheckJson(report));
    } else if (options.quiet) {
        fmt::print("{}", CheckComplaints(report));
    } else {
        fmt::print("{}{}", isFirst ? "" : "\n",
                   CheckText(report, {.isColoured = WantsColour(), .namesRecording = options.recordings.size() > 1}));
    }
    std::fflush(stdout);
}

// Of all recordings: one with faults counts for more than one of which nothing can be told.
Status Worse(Status before, CheckVerdict verdict) {
    if (before == kFaults || verdict == CheckVerdict::Faults) {
        return kFaults;
    }
    return verdict == CheckVerdict::CannotTell ? kCannotTell : before;
}

std::string Label(const CommandOptions& options) {
    return options.recordings.size() == 1 ? std::filesystem::path(options.recordings.front()).filename().string()
                                          : fmt::format("{} recordings", options.recordings.size());
}

Status CheckAll(const CommandOptions& options) {
    constexpr std::int64_t kSteps = 1000;
    const lineup::CheckSettings settings = options.check.Settings();
    const auto importer = options.check.common.LoadImporter();
    std::vector<CheckReport> kept;
    Status status = kRight;
    bool isFirst = true;
    std::optional<ProgressBar> bar;
    bar.emplace(Label(options), !options.quiet && !options.json && options.recordings.size() == 1);
    const auto progress = [&](std::optional<double> share) {
        if (share) {
            bar->Show(static_cast<std::int64_t>(*share * kSteps), kSteps);
        }
        return Interrupted() == 0;
    };
    CheckRecordings(options.recordings, importer, settings, progress, [&](CheckReport report) {
        if (options.recordings.size() == 1) {
            bar.reset();  // wiped before there is something to read
        }
        status = Worse(status, report.verdict);
        Print(report, options, isFirst);
        isFirst = false;
        if (!options.report.empty()) {
            kept.push_back(std::move(report));
        }
    });
    if (!options.report.empty()) {
        WriteCheckReport(options.report, kept);
    }
    return status;
}

Status WatchOne(const CommandOptions& options) {
    if (options.recordings.size() > 1) {
        throw lineup::UsageError("output", options.recordings[1], "is one too many: --watch takes one feed");
    }
    if (!options.report.empty()) {
        throw lineup::UsageError("report", options.report, "does not go with --watch, which prints what it finds");
    }
    const lineup::CheckSettings settings = options.check.Settings();
    return Worse(kRight, WatchFeed(options.recordings.front(), options.check.common.LoadImporter(), settings,
                                   {.json = options.json, .quiet = options.quiet}));
}

void RunCheck(const CommandOptions& options) {
    if (!options.report.empty()) {
        RequireReportName(options.report);
    }
    WatchForInterrupts();
    if (const Status status = options.watch ? WatchOne(options) : CheckAll(options); status != kRight) {
        throw CLI::RuntimeError(status);
    }
}

}  // namespace

void AddCheckCommand(CLI::App& app) {
    auto options = std::make_shared<CommandOptions>();
    CLI::App* const command = app.add_subcommand("check", "Say what a path did to the line-up in a recording");
    command->add_option("RECORDING", options->recordings, "What came out at the far end; may be several")->required();
    AddCheckOptions(*command, options->check);
    command->add_flag("--watch", options->watch,
                      "Say what is found as the recording comes: a line a cycle, faults when they begin and end");
    command->add_flag("--json", options->json, "Print JSON, a line for each recording, or what --watch says");
    command->add_option("--report", options->report, "Write a page (.html, .svg), or JUnit XML (.xml), too")
        ->type_name("FILE");
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    AddPluginOption(*command, options->check.common);
    command->footer(kCheckHelp + ToleranceHelp() + kExitHelp);
    command->callback([options] { RunCheck(*options); });
}

}  // namespace cli
