#include <lineup/ChannelLayout.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

// How many inputs a tone is due at: as many as were sent, or all where a layout has as many.
std::size_t InputsDue(const Case& check) {
    if (check.expected->channels) {
        return *check.expected->channels;
    }
    return FindChannelLayout(static_cast<int>(check.Inputs())) != nullptr ? check.Inputs() : 0;
}

void DecideSilent(Case& check) {
    std::vector<std::size_t> silent;
    for (std::size_t input = 0; input < std::min(InputsDue(check), check.Inputs()); ++input) {
        if (!check.At(input).sounds) {
            silent.push_back(input);
        }
    }
    if (!silent.empty()) {
        AddFault(check, "channel-missing", silent,
                 fmt::format("The tone is missing at input{} {}.", silent.size() == 1 ? "" : "s", InputList(silent)));
    }
    if (InputsDue(check) > check.Inputs()) {
        AddFault(check, "channel-missing", {},
                 fmt::format("The recording has only {} of the {} channels that were sent.", check.Inputs(),
                             InputsDue(check)));
    }
}

}  // namespace

void DecideTone(Case& check) {
    check.home.assign(check.Inputs(), std::nullopt);
    check.folded.assign(check.Inputs(), false);
    check.mixed.assign(check.Inputs(), false);
    check.parts.assign(check.Inputs(), std::vector<std::complex<double>>(1));
    check.change = FindLevelChange(check);
    DecideSilent(check);
    if (!check.Sent().pitchKnown) {
        check.Note("pitch-not-known", fmt::format("The tone arrives at {:.3f} Hz; --frequency HZ says what was sent.",
                                                  check.Sent().Frequencies().front()));
    }
}

}  // namespace lineup::sound
