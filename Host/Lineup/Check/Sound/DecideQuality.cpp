#include "Host/Lineup/Check/Sound/Case.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace lineup::sound {

namespace {

// The inputs whose number is beyond the limit, and the number that is furthest beyond.
struct Beyond {
    std::vector<std::size_t> inputs;
    double worst = 0;
};

Beyond FindBeyond(const Case& check, const std::function<std::optional<double>(const ChannelReport&)>& number,
                  double limit) {
    Beyond beyond;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto value = number(check.findings.sound.channels[input]);
        if (value && *value > limit) {
            beyond.worst = beyond.inputs.empty() ? *value : std::max(beyond.worst, *value);
            beyond.inputs.push_back(input);
        }
    }
    return beyond;
}

void DecideNoise(Case& check) {
    const Beyond beyond = FindBeyond(
        check, [](const ChannelReport& channel) { return channel.noise; }, check.Tolerance("noise"));
    if (!beyond.inputs.empty()) {
        check
            .Add("noise", beyond.inputs,
                 fmt::format("Noise of {:.1f} dBFS at input{} {}.", beyond.worst, beyond.inputs.size() == 1 ? "" : "s",
                             InputList(beyond.inputs)))
            .measured = beyond.worst;
    }
}

void DecideDc(Case& check) {
    std::vector<std::size_t> inputs;
    double worst = 0;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto& dc = check.findings.sound.channels[input].dc;
        if (dc && std::abs(*dc) > check.Tolerance("dc")) {
            inputs.push_back(input);
            worst = std::abs(*dc) > std::abs(worst) ? *dc : worst;
        }
    }
    if (!inputs.empty()) {
        CheckFault& fault = check.Add("dc-offset", inputs,
                                      fmt::format("{} {} off zero by {:.4f} of full scale.", Who(check, inputs),
                                                  inputs.size() == 1 ? "lies" : "lie", worst));
        fault.measured = worst;
        fault.expected = 0;
    }
}

void DecideBits(Case& check) {
    if (!check.facts.bits || check.facts.lossy.value_or(false)) {
        return;
    }
    std::vector<std::size_t> inputs;
    int least = *check.facts.bits;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto& bits = check.findings.sound.channels[input].effectiveBits;
        if (bits && check.At(input).sounds && *bits < std::min(*check.facts.bits, 24)) {
            inputs.push_back(input);
            least = std::min(least, *bits);
        }
    }
    if (!inputs.empty()) {
        CheckFault& fault = check.Add("bits-truncated", inputs,
                                      fmt::format("Only {} of {} bits are in use at input{} {}.", least,
                                                  *check.facts.bits, inputs.size() == 1 ? "" : "s", InputList(inputs)));
        fault.measured = least;
        fault.expected = *check.facts.bits;
    }
}

}  // namespace

void DecideQuality(Case& check) {
    DecideNoise(check);
    DecideDc(check);
    DecideBits(check);
}

}  // namespace lineup::sound
