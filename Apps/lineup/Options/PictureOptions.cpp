#include "Apps/lineup/Options/PictureOptions.h"

#include <lineup/UsageError.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace cli {

namespace {

constexpr const char* kGroup = "Picture";

// The row of a table of names that `text` names.
template <class Row, std::size_t kRows>
const Row& Named(const std::array<Row, kRows>& rows, const char* option, const std::string& text) {
    const auto* const found = std::ranges::find(rows, text, &Row::name);
    if (found == rows.end()) {
        std::array<std::string_view, kRows> names;
        std::ranges::transform(rows, names.begin(), &Row::name);
        const auto allButTheLast = std::span(names).first(kRows - 1);
        throw lineup::UsageError(option, text,
                                 fmt::format("must be {} or {}", fmt::join(allButTheLast, ", "), names.back()));
    }
    return *found;
}

}  // namespace

void AddPictureOptions(CLI::App& command, PictureOptions& options) {
    command.add_option("--size", options.size, "Size of the picture in pixels")
        ->type_name("WIDTHxHEIGHT")
        ->capture_default_str()
        ->group(kGroup);
    command
        .add_option_function<std::string>(
            "--card",
            [&options](const std::string& text) { options.card = Named(lineup::kCardNames, "card", text).card; },
            "Which card: hd has a luma ramp; auto takes sd below 720 lines [auto]")
        ->type_name("auto|hd|sd")
        ->group(kGroup);
    command
        .add_option_function<std::string>(
            "--aspect",
            [&options](const std::string& text) {
                options.aspect = Named(lineup::kPictureAspectNames, "aspect", text).aspect;
            },
            "Shape of the whole picture; auto: 4:3 for television's SD sizes, 16:9 for 1440x1080, else square pixels")
        ->type_name("auto|4:3|16:9|square")
        ->group(kGroup);
}

void AddScanOption(CLI::App& command, lineup::Scan& scan) {
    command
        .add_option_function<std::string>(
            "--scan", [&scan](const std::string& text) { scan = Named(lineup::kScanNames, "scan", text).scan; },
            "Whole frames, or two fields a frame, top or bottom first: 1080i at 50 fields is tff and --fps 25")
        ->type_name("progressive|tff|bff")
        ->group(kGroup);
}

}  // namespace cli
