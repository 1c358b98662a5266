#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Decide/Orders.h"
#include "Host/Lineup/Check/Sound/Measure/Assign.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

namespace lineup::sound {

namespace {

using Inputs = std::vector<std::size_t>;

constexpr double kFolded = 0.2;     // of the strongest part: a sum, not a leak
constexpr double kArrives = 0.01;   // of the loudest channel: what is softer has no level that a leak is held against
constexpr double kBeyondDoubt = 4;  // standard deviations: one in ten million by chance

double Db(double gain) {
    return 20 * std::log10(std::max(gain, 1e-15));
}

// How well the inputs from `first` on hold the channels in their order.
int ScoreOfBlock(const Case& check, std::size_t first) {
    int score = 0;
    for (std::size_t place = 0; place < check.Sent().channels.size(); ++place) {
        const Arrival& arrival = check.At(first + place);
        score += arrival.sounds ? 1 : 0;
        score += arrival.channel == place ? 2 : 0;
    }
    return score;
}

// Where a recording has more inputs than the sequence has channels: the stretches of inputs that hold them best, one
// after the other, the best first.
void FindHomes(Case& check) {
    const std::size_t channels = check.Sent().channels.size();
    check.home.assign(check.Inputs(), std::nullopt);
    if (check.Inputs() <= channels) {
        for (std::size_t input = 0; input < check.Inputs(); ++input) {
            check.home[input] = input;
        }
        return;
    }
    const auto isFree = [&](std::size_t first) {
        const auto begin = check.home.begin() + static_cast<std::ptrdiff_t>(first);
        return std::none_of(begin, begin + static_cast<std::ptrdiff_t>(channels),
                            [](const auto& home) { return home.has_value(); });
    };
    for (;;) {
        int best = 0;
        std::size_t where = 0;
        for (std::size_t first = 0; first + channels <= check.Inputs(); ++first) {
            if (isFree(first) && ScoreOfBlock(check, first) > best) {
                best = ScoreOfBlock(check, first);
                where = first;
            }
        }
        // A second line-up is one only where all of it is there.
        const bool isFirst = std::ranges::none_of(check.home, [](const auto& home) { return home.has_value(); });
        if (best == 0 || (!isFirst && best < static_cast<int>(2 * channels))) {
            return;
        }
        for (std::size_t place = 0; place < channels; ++place) {
            check.home[where + place] = place;
        }
    }
}

void FindParts(Case& check) {
    check.parts.clear();
    check.folded.assign(check.Inputs(), false);
    check.mixed.assign(check.Inputs(), false);
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        check.parts.push_back(PartsOf(check.lineup->cells, check.Sent(), input));
        const auto& parts = check.parts.back();
        double strongest = 0;
        for (const auto& part : parts) {
            strongest = std::max(strongest, std::abs(part));
        }
        const auto strong =
            std::ranges::count_if(parts, [&](const auto& part) { return std::abs(part) > kFolded * strongest; });
        check.folded[input] = !check.unsteady && check.At(input).sounds && strong > 1;
    }
}

// The level at which each channel is heard best, wherever that is.
std::vector<double> LevelsOf(const Case& check) {
    std::vector<double> levels(check.Sent().channels.size());
    for (const auto& parts : check.parts) {
        for (std::size_t channel = 0; channel < levels.size(); ++channel) {
            levels[channel] = std::max(levels[channel], std::abs(parts[channel]));
        }
    }
    return levels;
}

// The level at which each channel arrives where it belongs; of one that arrives nowhere, that of the others.
std::vector<double> ArrivingLevels(const Case& check, std::vector<double> levels) {
    std::vector<double> arriving;
    std::vector<bool> arrives(levels.size());
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (const auto& channel = check.At(input).channel) {
            arrives[*channel] = true;
            arriving.push_back(std::abs(check.parts[input][*channel]));
        }
    }
    const double usual = MedianOf(std::move(arriving));
    for (std::size_t channel = 0; channel < levels.size(); ++channel) {
        levels[channel] = arrives[channel] ? levels[channel] : std::max(levels[channel], usual);
    }
    return levels;
}

// What is heard of another channel at an input, and beside the level at which that arrives.
struct Leak {
    double gain = 0;
    std::size_t channel = 0;
};

// Something else than a leak leaves a channel's tones at an input.
bool IsLeftByOthers(const Case& check, std::size_t input, std::size_t channel) {
    // What never sounds alone is what others leave, and they are not what they were.
    const bool lossy = check.facts->lossy.value_or(false);
    const bool changed = check.change.kind != LevelChange::Kind::None || check.shapes[input].clipped < 1 ||
                         !check.lineup->placing.wanders.empty();
    const bool isLeft = changed && !WasHeardAlone(check.lineup->cells, check.Sent(), input, channel);
    const bool isOfPair = check.Sent().channels.size() == 2 && (lossy || isLeft);
    const bool isHum = check.shapes[input].mains && HasLowTone(check, channel);
    return check.unsteady || isHum || isOfPair;
}

// The strongest leak at an input. Empty where there is none that counts.
std::optional<Leak> LeakAt(const Case& check, std::size_t input, const std::vector<double>& levels,
                           const std::vector<double>& arriving) {
    const double least = kArrives * *std::ranges::max_element(levels);
    const std::vector<double> doubts = PartDoubts(check.lineup->cells, check.Sent(), input);
    std::optional<Leak> strongest;
    for (std::size_t channel = 0; channel < levels.size(); ++channel) {
        const double heard = std::abs(check.parts[input][channel]);
        const bool isHeard = levels[channel] > least && heard > kBeyondDoubt * doubts[channel];
        if (!isHeard || check.At(input).channel == channel || IsLeftByOthers(check, input, channel)) {
            continue;
        }
        const double leak = heard / arriving[channel];
        if (Db(leak) > check.Tolerance("crosstalk") && (!strongest || leak > strongest->gain)) {
            strongest = Leak{leak, channel};
        }
    }
    return strongest;
}

void DecideLeaks(Case& check) {
    const std::vector<double> levels = LevelsOf(check);
    const std::vector<double> arriving = ArrivingLevels(check, levels);
    Inputs leaks;
    double strongest = 0;
    std::string text;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto leak = check.folded[input] ? std::nullopt : LeakAt(check, input, levels, arriving);
        check.mixed[input] = leak.has_value();
        if (leak) {
            leaks.push_back(input);
        }
        if (leak && leak->gain > strongest) {
            strongest = leak->gain;
            text = fmt::format("{} is also heard at input {}, {:.1f} dB below where it belongs.",
                               check.Sent().channels[leak->channel], input + 1, -Db(leak->gain));
        }
    }
    const bool anyFolded = std::ranges::find(check.folded, true) != check.folded.end();
    if (!leaks.empty() && !anyFolded) {  // a fold-down leaves all levels open
        AddFault(check, "channel-mixed", leaks, text).measured = Db(strongest);
    }
}

void DecideFolded(Case& check) {
    Inputs folded;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.folded[input]) {
            folded.push_back(input);
        }
    }
    if (folded.empty()) {
        return;
    }
    const bool stereo = check.Inputs() == 2 && check.Sent().channels.size() > 2;
    AddFault(check, "channel-mixed", folded,
             stereo ? "Both inputs hold sums of channels: a fold-down to stereo."
                    : fmt::format("Input{} {} hold{} a sum of channels.", folded.size() == 1 ? "" : "s",
                                  InputList(folded), folded.size() == 1 ? "s" : ""));
}

// Inputs that hold the channel.
Inputs InputsWith(const Case& check, std::size_t channel) {
    Inputs inputs;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.At(input).channel == channel && !check.folded[input]) {
            inputs.push_back(input);
        }
    }
    return inputs;
}

std::size_t CountHomes(const Case& check, std::size_t channel) {
    return static_cast<std::size_t>(std::ranges::count(check.home, std::optional(channel)));
}

bool IsHome(const Case& check, std::size_t input) {
    return check.home[input] == check.At(input).channel;
}

// Copies, and the inputs that hold them.
Inputs DecideDuplicated(Case& check) {
    Inputs copies;
    for (std::size_t channel = 0; channel < check.Sent().channels.size(); ++channel) {
        const Inputs inputs = InputsWith(check, channel);
        if (inputs.size() < 2 || inputs.size() <= CountHomes(check, channel)) {
            continue;
        }
        AddFault(check, "channel-duplicated", inputs,
                 fmt::format("{} is at inputs {}.", check.Sent().channels[channel], InputList(inputs)));
        const bool isAtHome = std::ranges::any_of(inputs, [&](std::size_t input) { return IsHome(check, input); });
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            if (isAtHome ? !IsHome(check, inputs[i]) : i > 0) {
                copies.push_back(inputs[i]);
            }
        }
    }
    return copies;
}

void DecideSwapped(Case& check, const Inputs& copies) {
    Inputs moved;
    std::vector<std::string> all;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const bool isCopy = std::ranges::find(copies, input) != copies.end();
        all.push_back(isCopy || check.folded[input] ? "" : check.ChannelAt(input));
        if (check.At(input).channel && check.home[input] && !IsHome(check, input) && !isCopy && !check.folded[input]) {
            moved.push_back(input);
        }
    }
    if (moved.empty()) {
        return;
    }
    const std::string_view order = NameOfOrder(all);
    const bool isPair = moved.size() == 2 && check.home[moved[0]] == check.At(moved[1]).channel &&
                        check.home[moved[1]] == check.At(moved[0]).channel;
    std::vector<std::string> names;
    for (const std::size_t input : moved) {
        names.push_back(check.ChannelAt(input));
    }
    if (isPair) {
        AddFault(check, "channels-swapped", moved,
                 fmt::format("{} and {} are swapped (inputs {}).", names[1], names[0], InputList(moved)));
    } else {
        AddFault(check, "channels-swapped", moved,
                 moved.size() == 1 ? fmt::format("Input {} holds {}.", InputList(moved), names[0])
                 : order.empty()   ? fmt::format("Inputs {} hold {}.", InputList(moved), Listed(names))
                                   : fmt::format("The channels are in {}: inputs {} hold {}.", order, InputList(moved),
                                                 Listed(names)));
    }
}

// Silent inputs, each with the channel that is missing there: its own, or, where that arrives at another input, one
// that arrives nowhere.
std::map<std::size_t, std::string> MissingChannels(const Case& check) {
    std::map<std::size_t, std::string> missing;
    Inputs others;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto home = check.home[input];
        if (!home || check.At(input).sounds || !WasDue(check, *home, input)) {
            continue;
        }
        if (InputsWith(check, *home).empty()) {
            missing[input] = check.Sent().channels[*home];
        } else {
            others.push_back(input);
        }
    }
    const std::size_t channels = check.Sent().channels.size();
    for (std::size_t channel = 0; channel < channels && !others.empty(); ++channel) {
        const std::string& name = check.Sent().channels[channel];
        const bool isNamed = std::ranges::any_of(missing, [&](const auto& entry) { return entry.second == name; });
        if (!isNamed && InputsWith(check, channel).empty() && WasDue(check, channel, others.front())) {
            missing[others.front()] = name;
            others.erase(others.begin());
        }
    }
    return missing;
}

void DecideMissing(Case& check) {
    Inputs silent;
    std::vector<std::string> names;
    for (const auto& [input, name] : MissingChannels(check)) {
        silent.push_back(input);
        names.push_back(name);
    }
    if (!silent.empty()) {
        CheckFault& fault =
            AddFault(check, "channel-missing", silent,
                     fmt::format("{} {} missing (input{} {}).", Listed(names), names.size() == 1 ? "is" : "are",
                                 silent.size() == 1 ? "" : "s", InputList(silent)));
        fault.channels = names;
    }
    // Where the recording has fewer inputs than the sequence has channels.
    const bool anyFolded = std::ranges::find(check.folded, true) != check.folded.end();
    std::vector<std::string> without;
    for (std::size_t channel = check.Inputs(); channel < check.Sent().channels.size(); ++channel) {
        if (InputsWith(check, channel).empty()) {
            without.push_back(check.Sent().channels[channel]);
        }
    }
    if (!without.empty() && !anyFolded) {
        CheckFault& fault =
            AddFault(check, "channel-missing", {},
                     fmt::format("{} {} missing: the recording has only {} input{}.", Listed(without),
                                 without.size() == 1 ? "is" : "are", check.Inputs(), check.Inputs() == 1 ? "" : "s"));
        fault.channels = without;
    }
}

}  // namespace

void DecideSequence(Case& check) {
    const std::string& asked = check.expected->sequence;
    if (asked != "auto" && asked != check.Sent().name) {
        AddFault(check, "sequence-other", {}, fmt::format("This is {}, not {}.", check.Sent().name, asked));
    }
    if (check.Sent().lowTone) {
        check.Note("other-low-tone",
                   fmt::format("The low tone has {:g} Hz: another maker's version.", *check.Sent().lowTone));
    }
}

void DecideChannels(Case& check) {
    FindHomes(check);
    FindParts(check);
    check.change = FindLevelChange(check);
    DecideFolded(check);
    DecideLeaks(check);
    check.change = FindLevelChange(check);  // without what leaks
    const Inputs copies = DecideDuplicated(check);
    DecideSwapped(check, copies);
    DecideMissing(check);
}

}  // namespace lineup::sound
