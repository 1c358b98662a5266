#include "Apps/lineup/Commands/PeaksCommand.h"

#include <lineup/UsageError.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Options/TimeOptions.h"
#include "Apps/lineup/Overview/OverviewFile.h"
#include "Apps/lineup/Reports/ClipText.h"
#include "Host/Lineup/Files/TargetFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using zelmediatypes::TickTime;

namespace cli {

namespace {

constexpr const char* kPictureOptions = "Picture";

enum class Kind { Png, Svg, Json };
struct KindName {
    std::string_view extension;
    std::string_view name;
    Kind kind;
};
constexpr std::array<KindName, 3> kKinds = {{
    {".png", "PNG", Kind::Png},
    {".svg", "SVG", Kind::Svg},
    {".json", "JSON", Kind::Json},
}};

struct PeaksOptions {
    CommonOptions common;
    TimeOptions time;
    std::string target;
    std::optional<double> width;
    std::optional<double> height;
    bool dark = false;
    bool overwrite = false;
    bool quiet = false;
};

const KindName& KindOf(const std::string& target) {
    std::string extension = std::filesystem::path(target).extension().string();
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto* const found = std::ranges::find(kKinds, extension, &KindName::extension);
    if (found == kKinds.end()) {
        throw lineup::UsageError("output", target, "the name must end in .png, .svg or .json");
    }
    return *found;
}

// A whole number of pixels or columns within [least, most]; `usual` when none was given.
int WholeWithin(const char* option, std::optional<double> value, int usual, int least, int most) {
    if (!value) {
        return usual;
    }
    if (*value != std::floor(*value) || *value < least || *value > most) {
        throw lineup::UsageError(option, fmt::format("{}", *value),
                                 fmt::format("must be a whole number from {} to {}", least, most));
    }
    return static_cast<int>(*value);
}

lanes::LaneSheet MakeSheet(const PeaksOptions& options, int width, int lanes) {
    const int least = LeastOverviewHeight(lanes);
    const int usual = std::max(least, UsualOverviewHeight(width, lanes));
    const int height = WholeWithin("height", options.height, usual, least, std::max(least, kMostOverviewHeight));
    return OverviewSheet(width, height, lanes);
}

// The stretch asked for; without a length one cycle of a sequence, or what the plug-in says of the clip.
lineup::OverviewSpan MakeSpan(const PeaksOptions& options, const lineup::Clip& clip, int columns) {
    const lineup::Ident* const ident = PlayedIdent(clip);
    const TickTime usual = ident == nullptr ? DescribedDuration(clip) : TickTime(ident->cycleTicks);
    return {options.time.StartSample(clip), options.time.Duration(clip).value_or(usual), columns};
}

void RefusePictureOptions(const PeaksOptions& options) {
    constexpr const char* kWhy = "has no effect on a .json file: leave it out, or name a .png or .svg file";
    if (options.height) {
        throw lineup::UsageError("height", fmt::format("{}", *options.height), kWhy);
    }
    if (options.dark) {
        throw lineup::UsageError("dark", "yes", kWhy);
    }
}

std::vector<std::uint8_t> MakePicture(const PeaksOptions& options, const lineup::Clip& clip, Kind kind, int width) {
    OverviewPage page{.values = {},
                      .title = SignalText(clip),
                      .detail = SoundText(clip),
                      .sheet = MakeSheet(options, width, clip.NumChannels()),
                      .colours = options.dark ? lanes::LaneColours::Dark() : lanes::LaneColours::Light()};
    const auto columns = static_cast<int>(page.sheet.lanes.front().width);
    page.values = lineup::ReadOverview(clip, MakeSpan(options, clip, columns));
    return kind == Kind::Png ? OverviewPng(page) : OverviewSvg(page);
}

std::vector<std::uint8_t> MakeJson(const PeaksOptions& options, const lineup::Clip& clip, int columns) {
    RefusePictureOptions(options);
    const std::string text = OverviewJson(ReadOverview(clip, MakeSpan(options, clip, columns)), clip.SampleRate());
    return {text.begin(), text.end()};
}

void RunPeaks(const PeaksOptions& options) {
    const KindName& kind = KindOf(options.target);
    const int width = WholeWithin("width", options.width, kUsualOverviewWidth, kLeastOverviewWidth, kMostOverviewWidth);
    const auto importer = options.common.LoadImporter();
    const lineup::Clip clip(importer, options.common.Settings(*importer));
    const auto bytes =
        kind.kind == Kind::Json ? MakeJson(options, clip, width) : MakePicture(options, clip, kind.kind, width);
    lineup::TargetFile file(options.target, options.overwrite);
    file.Write(bytes);
    file.Commit();
    if (!options.quiet) {
        fmt::print("wrote {}: {}, {} bytes\n", options.target, kind.name, bytes.size());
    }
}

}  // namespace

void AddPeaksCommand(CLI::App& app) {
    auto options = std::make_shared<PeaksOptions>();
    CLI::App* const command = app.add_subcommand("peaks", "Draw a clip's waveform overview, or write its numbers");
    command->add_option("OUT", options->target, "The file to write: NAME.png, NAME.svg or NAME.json")->required();
    AddNumber(*command, "width", options->width,
              fmt::format("Width of the picture, or columns of a .json file, {} to {} [{}]", kLeastOverviewWidth,
                          kMostOverviewWidth, kUsualOverviewWidth),
              "pixels")
        ->group(kPictureOptions);
    AddNumber(*command, "height", options->height, "Height of the picture [what the channels need]", "pixels")
        ->group(kPictureOptions);
    command->add_flag("--dark", options->dark, "Light on a dark background")->group(kPictureOptions);
    AddTimeOptions(*command, options->time, "5, or one cycle of an ident");
    AddToneOptions(*command, options->common);
    command->add_flag("-y,--overwrite", options->overwrite, "Replace the file if it is there already");
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    AddPluginOption(*command, options->common);
    command->footer(fmt::format(
        "A column holds the least and the greatest value of its stretch of sound, so no burst is lost.\n"
        "Levels stand on a scale in dBFS. A tone with at least {} columns a cycle is drawn as its wave, on a\n"
        "linear scale.",
        lineup::kFewestColumnsPerCycle));
    command->callback([options] { RunPeaks(*options); });
}

}  // namespace cli
