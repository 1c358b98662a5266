#include "Apps/lineup/Options/PictureOptions.h"

#include <lineup/UsageError.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace cli {

namespace {

constexpr const char* kPicture = "Picture";

struct CardName {
    std::string_view name;
    lineup::Card card;
};
constexpr std::array<CardName, 3> kCards = {{
    {"auto", lineup::Card::Auto},
    {"hd", lineup::Card::HD},
    {"sd", lineup::Card::SD},
}};

lineup::Card ParseCard(const std::string& text) {
    const auto* const found = std::ranges::find(kCards, text, &CardName::name);
    if (found == kCards.end()) {
        throw lineup::UsageError("card", text, "must be auto, hd or sd");
    }
    return found->card;
}

}  // namespace

void AddPictureOptions(CLI::App& command, PictureOptions& options) {
    command.add_option("--size", options.size, "Size of the picture in pixels")
        ->type_name("WIDTHxHEIGHT")
        ->capture_default_str()
        ->group(kPicture);
    command
        .add_option_function<std::string>(
            "--card", [&options](const std::string& text) { options.card = ParseCard(text); },
            "Which card: hd has a luma ramp; auto takes sd below 720 lines [auto]")
        ->type_name("auto|hd|sd")
        ->group(kPicture);
}

}  // namespace cli
