#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Find/Speeds.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace lineup::sound {

namespace {

void DecidePolarity(Case& check) {
    std::vector<std::size_t> inverted;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.lineup->inputs[input].surveyed.polarity < 0 && !check.folded[input]) {
            inverted.push_back(input);
        }
    }
    if (!inverted.empty()) {
        CheckFault& fault =
            AddFault(check, "polarity-inverted", inverted,
                     fmt::format("{} {} upside down.", Who(check, inverted), inverted.size() == 1 ? "is" : "are"));
        fault.measured = -1;
        fault.expected = 1;
    }
}

// What a codec's noise may have turned the phase of an input's tones by, in samples of delay.
double CodecDoubt(const Case& check, std::size_t input) {
    const Arrival& arrival = check.At(input);
    if (!check.facts->lossy.value_or(false) || !arrival.channel) {
        return 0;
    }
    double lowest = 0;
    for (const RefBurst& burst : check.Sent().bursts) {
        const bool lower = lowest == 0 || burst.frequency < lowest;
        lowest = burst.channel == *arrival.channel && lower ? burst.frequency : lowest;
    }
    return lowest > 0 ? CodecNoise(check, input) / (2 * std::numbers::pi * lowest) * check.facts->rate : 0;
}

// A jump that edges alone know is known to some samples; an input without edges is off by as much.
double JumpDoubt(const Case& check, std::size_t input) {
    constexpr double kByEdges = 2;  // samples
    const bool rough = std::ranges::any_of(check.lineup->events, [](const SoundEvent& event) {
        return event.kind == SoundEvent::Kind::Jump && event.phases.empty();
    });
    return rough && !check.lineup->inputs[input].surveyed.hasEdges ? kByEdges : 0;
}

// Of a swing of the speed a part is left, in samples: inputs whose tones sound at other times have it as a delay.
double SwingDoubt(const Case& check) {
    constexpr double kLeft = 0.03;
    double late = 0;
    for (const Wander& wander : check.lineup->placing.wanders) {
        late += std::hypot(wander.sine, wander.cosine);
    }
    return kLeft * late * check.facts->rate;
}

// The others' doubt is that of the delay that all count from.
double UsualDoubt(const Case& check) {
    std::vector<double> doubts;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.At(input).channel) {
            doubts.push_back(CodecDoubt(check, input));
        }
    }
    return MedianOf(std::move(doubts));
}

void DecideDelay(Case& check) {
    const double common = UsualDoubt(check) + SwingDoubt(check);
    const double tolerance = check.Tolerance("delay");
    std::vector<std::pair<double, std::size_t>> late;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto& delay = check.findings->sound.channels[input].delay;
        if (delay && std::abs(*delay) > tolerance + common + CodecDoubt(check, input) + JumpDoubt(check, input) &&
            !check.folded[input]) {
            late.emplace_back(*delay, input);
        }
    }
    std::ranges::sort(late);
    for (std::size_t i = 0; i < late.size();) {
        std::vector<std::size_t> inputs;
        const double delay = late[i].first;
        for (; i < late.size() && late[i].first - delay <= tolerance; ++i) {
            inputs.push_back(late[i].second);
        }
        std::ranges::sort(inputs);
        CheckFault& fault = AddFault(
            check, "delay", inputs,
            fmt::format("{} {} {:.2f} samples ({:.3f} ms) {}.", Who(check, inputs), inputs.size() == 1 ? "is" : "are",
                        std::abs(delay), std::abs(delay) / check.facts->rate * 1000, delay > 0 ? "late" : "early"));
        fault.measured = delay;
        fault.expected = 0;
    }
}

// A swing that was not heard for whole turns leaves some of it.
constexpr double kOfSwing = 0.05;

// How well a speed is known where the pitch was kept: the further off it is, the more the seams lie beside each other.
double CorrectedPpm(double ratio) {
    constexpr double kOfSpeed = 0.02;
    constexpr double kLeastPpm = 100;
    return kLeastPpm + kOfSpeed * std::abs(ratio - 1) * 1e6;
}

void DecideSpeed(Case& check) {
    if (!check.findings->sound.speed) {
        return;
    }
    const SpeedReport& speed = *check.findings->sound.speed;
    const double wander = check.unsteady ? check.lineup->steadiness.Wander() * 1e6 : kOfSwing * check.wander * 1e6;
    if (std::abs(speed.ppm) <= check.Tolerance("speed") + wander) {
        return;
    }
    const bool corrected = check.lineup->placing.tempo != check.lineup->placing.pitch;
    const KnownSpeed* const known = FindKnownSpeed(speed.ratio, corrected ? CorrectedPpm(speed.ratio) : 60);
    const std::string cause = known == nullptr ? "" : fmt::format(": {}", known->cause);
    CheckFault& fault =
        AddFault(check, "speed-wrong", {},
                 fmt::format("It plays {:.4g} % too {}{}{}.", std::abs(speed.ratio - 1) * 100,
                             speed.ratio > 1 ? "fast" : "slowly", cause, corrected ? ", with the pitch kept" : ""));
    fault.measured = speed.ppm;
    fault.expected = 0;
}

}  // namespace

void DecideTiming(Case& check) {
    if (!check.unsteady) {
        DecidePolarity(check);
        DecideDelay(check);
    }
    DecideSpeed(check);
}

}  // namespace lineup::sound
