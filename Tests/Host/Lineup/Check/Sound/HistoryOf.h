#pragma once

#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"
#include "Host/Lineup/Check/Sound/Signal/FrontEnd.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <span>
#include <vector>

namespace test {

using Channels = std::vector<std::vector<float>>;
inline constexpr double kFinderRate = 48000;  // Hz: there is a band above that of the tones
inline constexpr double kFinderHertz = 1000;
inline constexpr double kFinderLevel = 0.125;

/// What a recording of these samples leaves in memory.
inline lineup::sound::History HistoryOf(Channels sound, bool lossy = false) {
    const lineup::sound::Grid grid = lineup::sound::MakeGrid(kFinderRate, 2000);
    lineup::sound::History history(static_cast<int>(sound.size()), grid, 20, lossy);
    for (std::size_t input = 0; input < sound.size(); ++input) {
        const std::size_t whole = sound[input].size() / static_cast<std::size_t>(grid.HopSamples());
        const std::span<float> hops =
            std::span(sound[input]).first(whole * static_cast<std::size_t>(grid.HopSamples()));
        lineup::sound::InputFrontEnd(grid).Process(hops, history.narrow[input], history.hops[input]);
    }
    return history;
}

/// The tone, where what is due at second t is that of second `sent(t)`.
inline std::vector<float> ToneOf(double seconds, const std::function<double(double)>& sent) {
    std::vector<float> tone(static_cast<std::size_t>(seconds * kFinderRate));
    for (std::size_t n = 0; n < tone.size(); ++n) {
        const double turns = kFinderHertz * sent(static_cast<double>(n) / kFinderRate);
        tone[n] = static_cast<float>(kFinderLevel * std::sin(2 * std::numbers::pi * (turns - std::floor(turns))));
    }
    return tone;
}

inline std::vector<float> ToneOf(double seconds) {
    return ToneOf(seconds, [](double second) { return second; });
}

/// A tone of one channel in slots of a second.
inline lineup::sound::Reference ToneReference() {
    lineup::sound::Reference reference;
    reference.name = "tone";
    reference.cycle = 1;
    reference.channels = {""};
    reference.slots = {{0, 1, {{kFinderHertz, {kFinderLevel}, false}}}};
    reference.bursts = {{0, kFinderHertz, 0, 1}};
    return reference;
}

}  // namespace test
