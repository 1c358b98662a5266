#include <lineup/ChannelLayout.h>
#include <lineup/CheckSettings.h>
#include <lineup/Idents.h>
#include <lineup/Level.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lineup {

namespace {

constexpr std::array kTolerances = {
    CheckTolerance{"level", 0.1, "dB", "how far a level may be from what was sent"},
    CheckTolerance{"delay", 0.5, "samples", "how far apart channels may arrive"},
    CheckTolerance{"speed", 5, "ppm", "how far the speed may be off"},
    CheckTolerance{"noise", -60, "dBFS", "noise that may lie under the tone or in the gaps"},
    CheckTolerance{"hum", -60, "dBFS", "hum that may lie under the tone or in the gaps"},
    CheckTolerance{"distortion", -60, "dB", "harmonics, against their tone"},
    CheckTolerance{"crosstalk", -60, "dB", "how much of a channel may be heard at another input"},
    CheckTolerance{"dc", 0.001, "full scale", "how far from zero the signal may lie"},
    CheckTolerance{"patches", 2, "codes", "how far the mean of a patch may be off"},
    CheckTolerance{"place", 1, "pixels", "how far an edge of the card may be off"},
    CheckTolerance{"picture-noise", 1, "codes", "noise that may lie in the patches"},
    CheckTolerance{"softness", 2.6, "pixels", "how wide an edge may be"},
    CheckTolerance{"lengths", 0.5, "frames", "how much longer the sound may be than the picture, or shorter"},
};

constexpr std::array<std::string_view, 4> kCards = {"auto", "hd", "sd", "none"};

[[noreturn]] void Refuse(const char* option, double value, const char* remedy) {
    throw UsageError(option, fmt::format("{}", value), remedy);
}

template <class Row>
std::vector<std::string_view> NamesOf(std::span<const Row> rows) {
    std::vector<std::string_view> names;
    for (const Row& row : rows) {
        names.push_back(row.name);
    }
    return names;
}

void RequireName(const char* option, const std::string& value, const std::vector<std::string_view>& names) {
    if (std::ranges::find(names, value) == names.end()) {
        throw UsageError(option, value, fmt::format("must be {}", fmt::join(names, ", ")));
    }
}

void ValidateExpectation(const CheckSettings& settings) {
    std::vector<std::string_view> names = NamesOf(Idents());
    names.insert(names.begin(), {"auto", "tone", "none"});
    RequireName("expect", settings.expect, names);
    if (settings.channels) {
        RequireName("channels", *settings.channels, NamesOf(ChannelLayouts()));
    }
    const Ident* const ident = FindIdent(settings.expect);
    if (ident != nullptr && settings.channels &&
        *settings.channels != FindChannelLayout(static_cast<int>(ident->numChannels))->name) {
        throw UsageError("channels", *settings.channels,
                         fmt::format("does not go with the {}: leave it out", ident->title));
    }
    if (ident != nullptr && settings.frequencyHz) {
        throw UsageError("frequency", fmt::format("{}", *settings.frequencyHz),
                         fmt::format("is that of a steady tone, not of the {}: leave it out", ident->title));
    }
}

// NaN is neither.
bool IsFrequency(double hertz) {
    return hertz >= 1 && hertz <= 192000;
}

bool IsLevel(double db) {
    return db > kSilenceDb && db <= 0;
}

void ValidateTimes(const CheckSettings& settings) {
    if (settings.fromSeconds && (*settings.fromSeconds < 0 || !std::isfinite(*settings.fromSeconds))) {
        Refuse("from", *settings.fromSeconds, "must be 0 s or later");
    }
    if (settings.forSeconds && (*settings.forSeconds <= 0 || !std::isfinite(*settings.forSeconds))) {
        Refuse("for", *settings.forSeconds, "must be longer than 0 s");
    }
}

}  // namespace

std::span<const CheckTolerance> CheckTolerances() {
    return kTolerances;
}

const CheckTolerance* FindCheckTolerance(std::string_view name) {
    const auto* const found = std::ranges::find(kTolerances, name, &CheckTolerance::name);
    return found == kTolerances.end() ? nullptr : found;
}

void ValidateCheckSettings(const CheckSettings& settings) {
    ValidateExpectation(settings);
    RequireName("card", settings.card, {kCards.begin(), kCards.end()});
    if (settings.card == "none" && settings.expect == "none") {
        throw UsageError("card", settings.card,
                         "leaves nothing to look at where no sound is expected: leave one of them out");
    }
    if (settings.frequencyHz && !IsFrequency(*settings.frequencyHz)) {
        Refuse("frequency", *settings.frequencyHz, "must be 1 to 192000 Hz");
    }
    if (settings.levelDb && !IsLevel(*settings.levelDb)) {
        Refuse("level", *settings.levelDb, "must be 0 dBFS or less; 0 is full scale");
    }
    ValidateTimes(settings);
    for (const auto& [name, value] : settings.tolerances) {
        RequireName("tolerance", name, NamesOf(CheckTolerances()));
        if (!std::isfinite(value)) {
            throw UsageError("tolerance", fmt::format("{}={}", name, value), "must be a number");
        }
    }
}

double ToleranceOf(const CheckSettings& settings, std::string_view name) {
    const auto set = settings.tolerances.find(name);
    return set != settings.tolerances.end() ? set->second : FindCheckTolerance(name)->value;
}

}  // namespace lineup
