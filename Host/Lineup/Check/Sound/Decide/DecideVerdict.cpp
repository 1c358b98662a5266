#include "Host/Lineup/Check/Sound/Decide/Case.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <vector>

namespace lineup::sound {

namespace {

constexpr double kTakenAway = 0.02;  // of what is due of a tone

// Channels that nothing is known of: what was heard holds no stretch in which they were due.
std::vector<std::string> UnheardChannels(const Case& check) {
    std::vector<std::string> names;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto home = check.home[input];
        if (home && !check.At(input).sounds && !WasDue(check, *home, input)) {
            names.push_back(check.Sent().channels[*home]);
        }
    }
    return names;
}

// A tone of the input's channel is due and gone, while one that is lower is there: a low-pass filter.
bool LacksItsHighTones(const Case& check, std::size_t input) {
    const Arrival& arrival = check.At(input);
    bool lacks = false;
    double highest = 0;  // of those that are there
    double lowestGone = 0;
    for (std::size_t slot = 0; arrival.channel && slot < check.Sent().slots.size(); ++slot) {
        const auto& tones = check.Sent().slots[slot].tones;
        for (std::size_t tone = 0; tone < tones.size(); ++tone) {
            const double due = tones[tone].Amplitude(*arrival.channel) * arrival.gain;
            const Cell& cell = check.lineup->cells.At(slot, tone, input);
            if (due <= 0 || !cell.Seen()) {
                continue;
            }
            const bool gone = cell.Amplitude() < kTakenAway * due;
            double& bound = gone ? lowestGone : highest;
            const bool isFirst = bound == 0;
            bound = isFirst || (gone ? tones[tone].frequency < bound : tones[tone].frequency > bound)
                        ? tones[tone].frequency
                        : bound;
            lacks = lacks || gone;
        }
    }
    return lacks && highest > 0 && highest < lowestGone;
}

std::vector<std::size_t> WithoutPolarity(const Case& check) {
    std::vector<std::size_t> inputs;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.At(input).channel && check.lineup->inputs[input].surveyed.polarity == 0 && !check.folded[input]) {
            inputs.push_back(input);
        }
    }
    return inputs;
}

// What would tell the polarities that are open.
std::string_view WhatSettlesPolarity(const Case& check, bool isLimited) {
    if (isLimited) {
        return "a recording from before the codec";
    }
    if (check.lineup->placing.tempo != check.lineup->placing.pitch) {
        return "a recording from before it was retimed";
    }
    if (check.facts->lossy.value_or(false)) {
        return "more cycles, or a recording from before the codec,";
    }
    return check.change.kind == LevelChange::Kind::Parts ? "a recording from before the limiter" : "a whole cycle";
}

}  // namespace

void DecideVerdict(Case& check) {
    std::vector<std::size_t> limited;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (LacksItsHighTones(check, input)) {
            limited.push_back(input);
        }
    }
    if (!limited.empty()) {
        check.Note("low-frequency-band-limited",
                   fmt::format("{} arrives without its high tones: codecs keep low frequencies alone in that channel.",
                               Who(check, limited)));
    }
    const std::vector<std::string> unheard = UnheardChannels(check);
    if (!unheard.empty()) {
        check.Note("channels-not-heard",
                   fmt::format("{} {} not due in what was heard; a whole cycle would settle what arrives there.",
                               Listed(unheard), unheard.size() == 1 ? "was" : "were"));
    }
    const std::vector<std::size_t> open = WithoutPolarity(check);
    if (!open.empty()) {
        check.Note("polarity-not-known",
                   fmt::format("Whether {} {} upside down cannot be told; {} would settle it.", Who(check, open),
                               open.size() == 1 ? "is" : "are", WhatSettlesPolarity(check, !limited.empty())));
    }
    const bool isSure = unheard.empty() && open.empty();
    check.findings->verdict = !check.findings->faults.empty() ? CheckVerdict::Faults
                              : isSure                        ? CheckVerdict::Right
                                                              : CheckVerdict::CannotTell;
}

}  // namespace lineup::sound
