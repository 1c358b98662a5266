#include "Apps/lineup/Options/CheckOptions.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>
#include <lineup/SettingsFile.h>
#include <lineup/UsageError.h>
#include "Apps/lineup/Options/TimeOptions.h"
#include "Apps/lineup/Options/Values.h"

#include <fmt/format.h>

#include <algorithm>

namespace cli {

namespace {

constexpr const char* kExpected = "What was sent";

double Seconds(const char* option, const std::string& text) {
    const auto ticks = static_cast<double>(ParseTime(option, text).Ticks());
    return ticks / static_cast<double>(zelmediatypes::kTicksPerSecond);
}

void AddTolerance(lineup::CheckSettings& settings, const std::string& text) {
    constexpr const char* kOption = "tolerance";
    const std::size_t sign = text.find('=');
    const std::string name = text.substr(0, sign);
    if (sign == std::string::npos || lineup::FindCheckTolerance(name) == nullptr) {
        std::string names;
        for (const lineup::CheckTolerance& tolerance : lineup::CheckTolerances()) {
            names += (names.empty() ? "" : ", ") + std::string(tolerance.name);
        }
        throw lineup::UsageError(kOption, text, fmt::format("must be NAME=VALUE, with a NAME of {}", names));
    }
    settings.tolerances[name] = ParseNumber(kOption, text.substr(sign + 1), "must be NAME=VALUE, with a number");
}

std::string ExpectNames() {
    std::string names = "auto|tone";
    for (const lineup::Ident& ident : lineup::Idents()) {
        names += "|" + std::string(ident.name);
    }
    return names + "|none";
}

std::string LayoutNames() {
    std::string names;
    for (const lineup::ChannelLayout& layout : lineup::ChannelLayouts()) {
        names += (names.empty() ? "" : "|") + std::string(layout.name);
    }
    return names;
}

}  // namespace

lineup::CheckSettings CheckOptions::Settings() const {
    lineup::CheckSettings settings;
    settings.expect = expect;
    settings.card = card;
    settings.frequencyHz = frequencyHz;
    settings.levelDb = levelDb;
    settings.channels = channels;
    if (!settingsFile.empty()) {
        settings.settings = lineup::ReadSettings(settingsFile);
    }
    if (from) {
        settings.fromSeconds = Seconds("from", *from);
    }
    if (length) {
        settings.forSeconds = Seconds("for", *length);
    }
    for (const std::string& tolerance : tolerances) {
        AddTolerance(settings, tolerance);
    }
    ValidateCheckSettings(settings);
    return settings;
}

void AddCheckOptions(CLI::App& command, CheckOptions& options) {
    command.add_option("--expect", options.expect, "The line-up that was sent; auto finds out")
        ->type_name(ExpectNames())
        ->capture_default_str()
        ->group(kExpected);
    AddNumber(command, "frequency", options.frequencyHz, "Frequency of the steady tone that was sent", "Hz")
        ->group(kExpected);
    AddNumber(command, "level", options.levelDb, "Peak level that was sent", "dBFS")->group(kExpected);
    command.add_option("--channels", options.channels, "Channel layout that was sent")
        ->type_name(LayoutNames())
        ->group(kExpected);
    command.add_option("--settings", options.settingsFile, "Take all of this from a file that lineup settings made")
        ->type_name("FILE")
        ->group(kExpected);
    command
        .add_option("--card", options.card, "The colour bars that were sent; auto finds out, none looks at no pictures")
        ->type_name("auto|hd|sd|none")
        ->capture_default_str()
        ->group(kExpected);
    command.add_option("--from", options.from, "Begin to look here: seconds, MM:SS or HH:MM:SS [the start]")
        ->type_name("TIME")
        ->group(kTimeGroup);
    command.add_option("--for", options.length, "Look for no longer than this [to the end]")
        ->type_name("TIME")
        ->group(kTimeGroup);
    command
        .add_option("--tolerance", options.tolerances, "What may be off before it counts; may be given more than once")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
}

std::string ToleranceHelp() {
    std::string text = "Tolerances, and what they are unless set:\n";
    for (const lineup::CheckTolerance& tolerance : lineup::CheckTolerances()) {
        text += fmt::format("  {:<22}{}\n", fmt::format("{}={:g} {}", tolerance.name, tolerance.value, tolerance.unit),
                            tolerance.meaning);
    }
    return text;
}

}  // namespace cli
