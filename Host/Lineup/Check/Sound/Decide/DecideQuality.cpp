#include "Host/Lineup/Check/Sound/Decide/Case.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

double NoisePower(double db) {
    return std::pow(10, db / 10);
}

// Noise, dBFS, less what hum, harmonics and a wandering speed explain. Where they are most of it, what lies between the
// lines tells the rest.
double Unexplained(const Case& check, std::size_t input, double db) {
    constexpr double kLeft = 0.3;  // of the power: more is not explained by them
    const ShapeOfInput& shape = check.shapes[input];
    const LineFindings& lines = check.lineup->inputs[input].lines;
    const double tone = LoudTone(check, input);
    const bool bent = shape.clipped < 1 || shape.distorted;
    const double harmonics = bent ? NoisePower(lines.harmonics.QuantileDb(0.9)) : 0;  // a louder tone has more of them
    const double explained = shape.humPower + harmonics * tone * tone / 2;
    if (check.unsteady) {
        return LevelTally::kLowestDb;
    }
    if (shape.clipped == 1 && NoisePower(db) - explained >= kLeft * NoisePower(db)) {
        return db;
    }
    const bool lossy = check.facts->lossy.value_or(false);
    return lossy ? LevelTally::kLowestDb : std::min(db, lines.floor.QuantileDb(0.5));
}

// What a codec adds to a tone goes with the tone, as do the seams of retiming that keeps the pitch; noise in the gaps
// comes from elsewhere.
void DecideNoise(Case& check) {
    const double limit = check.Tolerance("noise");
    const Placing& placing = check.lineup->placing;
    const bool retimed = placing.tempo != placing.pitch;
    const bool lossy = check.facts->lossy.value_or(false);
    std::vector<std::size_t> inputs;
    std::vector<std::size_t> coded;
    double worst = LevelTally::kLowestDb;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const InputFindings& found = check.lineup->inputs[input];
        const double gaps = found.gapNoise.QuantileDb(lossy || retimed ? 0.1 : 0.5);
        const double tones = found.toneNoise.QuantileDb(0.5);
        const double noise = Unexplained(check, input, lossy || retimed ? gaps : std::max(gaps, tones));
        if (noise > limit) {
            inputs.push_back(input);
            worst = std::max(worst, noise);
        } else if (lossy && tones > limit) {
            coded.push_back(input);
        }
    }
    if (!inputs.empty()) {
        AddFault(
            check, "noise", inputs,
            fmt::format("Noise of {:.1f} dBFS at input{} {}.", worst, inputs.size() == 1 ? "" : "s", InputList(inputs)))
            .measured = worst;
    }
    if (!coded.empty()) {
        check.Note("codec-noise",
                   fmt::format("The codec leaves more than {:.0f} dBFS of noise under the tones of input{} {}.", limit,
                               coded.size() == 1 ? "" : "s", InputList(coded)));
    }
}

void DecideDc(Case& check) {
    std::vector<std::size_t> inputs;
    double worst = 0;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto& dc = check.findings->sound.channels[input].dc;
        if (dc && std::abs(*dc) > check.Tolerance("dc")) {
            inputs.push_back(input);
            worst = std::abs(*dc) > std::abs(worst) ? *dc : worst;
        }
    }
    if (!inputs.empty()) {
        CheckFault& fault = AddFault(check, "dc-offset", inputs,
                                     fmt::format("{} {} off zero by {:.4f} of full scale.", Who(check, inputs),
                                                 inputs.size() == 1 ? "lies" : "lie", worst));
        fault.measured = worst;
        fault.expected = 0;
    }
}

// How many samples of a sine repeat for ever; kMany where they are so many that it does not matter.
int PeriodInSamples(double turnsPerSample) {
    constexpr int kMany = 400;
    constexpr double kSame = 1e-6;  // turns
    int period = 1;
    while (period < kMany && std::abs(std::remainder(period * turnsPerSample, 1.0)) > kSame) {
        ++period;
    }
    return period;
}

// How many sizes the samples of what was sent come in. A tone of 1000 Hz has two at 8 kHz, and those may well end in
// zeros as they are.
int CountSizes(const Case& check) {
    int sizes = 0;
    for (const double frequency : check.Sent().Frequencies()) {
        const int period = PeriodInSamples(frequency * check.lineup->placing.pitch / check.facts->rate);
        sizes += period % 2 == 0 ? (period + 2) / 4 : period / 2;  // each half of a sine mirrors the other
    }
    return sizes;
}

void DecideBits(Case& check) {
    if (!check.facts->bits || check.facts->lossy.value_or(false)) {
        return;
    }
    constexpr int kNoChance = 10;  // bits that are zero in all sizes: once in a thousand by chance
    const int sizes = CountSizes(check);
    std::vector<std::size_t> inputs;
    int least = *check.facts->bits;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const auto& bits = check.findings->sound.channels[input].effectiveBits;
        const int missing = bits ? std::min(*check.facts->bits, 24) - *bits : 0;
        if (check.At(input).sounds && missing > 0 && missing * sizes >= kNoChance) {
            inputs.push_back(input);
            least = std::min(least, *bits);
        }
    }
    if (!inputs.empty()) {
        CheckFault& fault = AddFault(check, "bits-truncated", inputs,
                                     fmt::format("Only {} of {} bits are in use at input{} {}.", least,
                                                 *check.facts->bits, inputs.size() == 1 ? "" : "s", InputList(inputs)));
        fault.measured = least;
        fault.expected = *check.facts->bits;
    }
}

}  // namespace

void DecideQuality(Case& check) {
    DecideNoise(check);
    DecideDc(check);
    DecideBits(check);
}

}  // namespace lineup::sound
