#include "Host/Lineup/Check/Sound/Decide/Case.h"

#include "Host/Lineup/Check/Sound/Decide/SoundReportOf.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>
#include <vector>

namespace lineup::sound {

std::string Case::ChannelAt(std::size_t input) const {
    const auto& channel = At(input).channel;
    return channel ? Sent().channels[*channel] : std::string();
}

CheckFault& AddFault(const Case& check, std::string_view id, const std::vector<std::size_t>& inputs, std::string text) {
    CheckFault fault;
    fault.id = id;
    fault.unit = FindCheckFaultKind(id, CheckPart::Sound)->unit;
    fault.text = std::move(text);
    for (const std::size_t input : inputs) {
        fault.inputs.push_back(static_cast<int>(input));
        if (!check.ChannelAt(input).empty()) {
            fault.channels.push_back(check.ChannelAt(input));
        }
    }
    check.findings->faults.push_back(std::move(fault));
    return check.findings->faults.back();
}

void Case::Note(std::string_view id, std::string text) const {
    findings->notes.push_back({std::string(id), CheckPart::Sound, std::move(text)});
}

double CodecNoise(const Case& check, std::size_t input) {
    const double tone = check.At(input).gain * check.Sent().Level() / std::numbers::sqrt2;
    if (!check.facts->lossy.value_or(false) || !check.At(input).sounds || tone <= 0) {
        return 0;
    }
    return std::pow(10, check.lineup->inputs[input].toneNoise.QuantileDb(0.5) / 20) / tone;
}

double LoudTone(const Case& check, std::size_t input) {
    std::vector<double> amplitudes;
    for (const LevelPoint& point : check.lineup->levels) {
        if (point.input == input && point.full) {
            amplitudes.push_back(point.sent * std::pow(10, point.db / 20));
        }
    }
    if (amplitudes.empty()) {
        return check.At(input).gain * check.Sent().Level();
    }
    const auto loud = amplitudes.begin() + static_cast<std::ptrdiff_t>(amplitudes.size() * 9 / 10);
    std::ranges::nth_element(amplitudes, loud);
    return *loud;
}

bool HasLowTone(const Case& check, std::size_t channel) {
    return std::ranges::any_of(check.Sent().bursts, [channel](const RefBurst& burst) {
        return burst.channel == channel && burst.frequency < kLowTone;
    });
}

bool WasDue(const Case& check, std::size_t channel, std::size_t input) {
    for (std::size_t slot = 0; slot < check.Sent().slots.size(); ++slot) {
        const auto& tones = check.Sent().slots[slot].tones;
        for (std::size_t tone = 0; tone < tones.size(); ++tone) {
            if (tones[tone].Amplitude(channel) > 0 && check.lineup->cells.At(slot, tone, input).Seen()) {
                return true;
            }
        }
    }
    return false;
}

std::string Listed(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : (i + 1 == words.size() ? " and " : ", ");
        text += words[i];
    }
    return text;
}

std::string InputList(const std::vector<std::size_t>& inputs) {
    std::vector<std::string> words;
    words.reserve(inputs.size());
    for (const std::size_t input : inputs) {
        words.push_back(std::to_string(input + 1));
    }
    return Listed(words);
}

std::string Who(const Case& check, const std::vector<std::size_t>& inputs) {
    std::vector<std::string> names;
    for (const std::size_t input : inputs) {
        if (!check.ChannelAt(input).empty()) {
            names.push_back(check.ChannelAt(input));
        }
    }
    const std::string where = fmt::format("nput{} {}", inputs.size() == 1 ? "" : "s", InputList(inputs));
    return names.size() == inputs.size() ? fmt::format("{} (i{})", Listed(names), where) : "I" + where;
}

void Decide(Case& check) {
    check.findings->sound = SoundReportOf(*check.lineup, *check.facts);
    FindShapes(check);
    DecideSequence(check);
    if (check.Sent().Steady()) {
        DecideTone(check);
    } else {
        DecideChannels(check);
    }
    DecideLevels(check);
    DecideTiming(check);
    DecideQuality(check);
    DecideShapes(check);
    DecideEvents(check);
    DecideVerdict(check);
}

}  // namespace lineup::sound
