#include "Apps/lineup/Options/PictureOptions.h"

#include <lineup/UsageError.h>

#include <algorithm>

namespace cli {

namespace {

constexpr const char* kGroup = "Picture";

lineup::Card ParseCard(const std::string& text) {
    const auto* const found = std::ranges::find(lineup::kCardNames, text, &lineup::CardName::name);
    if (found == lineup::kCardNames.end()) {
        throw lineup::UsageError("card", text, "must be auto, hd or sd");
    }
    return found->card;
}

}  // namespace

void AddPictureOptions(CLI::App& command, PictureOptions& options) {
    command.add_option("--size", options.size, "Size of the picture in pixels")
        ->type_name("WIDTHxHEIGHT")
        ->capture_default_str()
        ->group(kGroup);
    command
        .add_option_function<std::string>(
            "--card", [&options](const std::string& text) { options.card = ParseCard(text); },
            "Which card: hd has a luma ramp; auto takes sd below 720 lines [auto]")
        ->type_name("auto|hd|sd")
        ->group(kGroup);
}

}  // namespace cli
