#include <lineup/Level.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Follow/LowTone.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace lineup::sound {

namespace {

constexpr double kFlatTops = 0.07;      // of the samples: a sine has 0.02 so near to its extremes
constexpr double kOverBeside = 8;       // in power: lines against what lies between them
constexpr double kLeastClipped = 1e-5;  // power of harmonics: tops that are cut have some
constexpr double kHumBeside = 2;
constexpr double kUnsteadyLeast = 20e-6;

double PowerOf(double db) {
    return std::pow(10, db / 10);
}

double PowerDb(double power) {
    return 10 * std::log10(std::max(power, 1e-18));
}

// Harmonics in parts of the tone's power, where they stand out of the noise.
double HarmonicsOf(const InputFindings& found) {
    if (found.lines.harmonics.Empty()) {
        return 0;
    }
    const double power = PowerOf(found.lines.harmonics.QuantileDb(0.5));
    return power > kOverBeside * PowerOf(found.lines.beside.QuantileDb(0.5)) ? power : 0;
}

// Where the tops are cut off, in parts of the amplitude that the tone would have: many samples lie by the extremes, and
// the fundamental and the extremes tell how much is gone.
double ClippedAt(const Case& check, std::size_t input) {
    const InputFindings& found = check.lineup.inputs[input];
    const double flat = found.samples > 0 ? found.tops / found.samples / 2 : 0;
    const double top = std::max(-found.least, found.most);
    const double fundamental = check.At(input).gain * check.Sent().Level();
    if (flat <= kFlatTops || top <= 0 || fundamental <= top) {
        return 1;
    }
    double least = 0.01;
    double most = 1;
    while (most - least > 1e-6) {
        const double part = (least + most) / 2;
        (ClippedGain(part) / part > fundamental / top ? least : most) = part;
    }
    return least;
}

// What a codec leaves beside a low tone lies where hum does.
bool HasLowTone(const Case& check, std::size_t input) {
    return std::ranges::any_of(check.Sent().bursts, [&](const RefBurst& burst) {
        return burst.frequency < kLowTone && check.At(input).channel == burst.channel;
    });
}

ShapeOfInput ShapeOf(const Case& check, std::size_t input) {
    const InputFindings& found = check.lineup.inputs[input];
    ShapeOfInput shape;
    shape.harmonics = HarmonicsOf(found);
    const double limit = PowerOf(check.Tolerance("distortion"));
    if (shape.harmonics > kLeastClipped) {
        shape.clipped = ClippedAt(check, input);
    }
    shape.distorted = shape.clipped == 1 && shape.harmonics > limit;
    const double leastHum = PowerOf(check.Tolerance("hum"));
    for (std::size_t mains = 0; mains < kMains.size(); ++mains) {
        const HumTally& hum = found.lines.hum[mains];
        const double power = hum.power.Empty() ? 0 : PowerOf(hum.power.QuantileDb(0.5));
        const bool isCodecs = check.facts.lossy.value_or(false) && HasLowTone(check, input);
        if (!isCodecs && power > leastHum && power > kOverBeside * PowerOf(hum.beside.QuantileDb(0.5)) &&
            power > shape.humPower) {
            shape.humPower = power;
            shape.mains = mains;
        }
    }
    const double tone = check.At(input).gain * check.Sent().Level();
    const bool isHum = shape.harmonics * tone * tone / 2 < kHumBeside * shape.humPower;  // under a low tone's harmonics
    shape.distorted = shape.distorted && !isHum;
    return shape;
}

template <class Takes>
std::vector<std::size_t> InputsWhere(const Case& check, const Takes& takes) {
    std::vector<std::size_t> inputs;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (takes(check.shapes[input])) {
            inputs.push_back(input);
        }
    }
    return inputs;
}

void DecideClipped(Case& check) {
    const auto inputs = InputsWhere(check, [](const ShapeOfInput& shape) { return shape.clipped < 1; });
    if (inputs.empty()) {
        return;
    }
    double top = 0;
    for (const std::size_t input : inputs) {
        const InputFindings& found = check.lineup.inputs[input];
        top = std::max({top, -found.least, found.most});
    }
    check
        .Add("clipped", inputs,
             fmt::format("{} {} cut off at {:.2f} dBFS.", Who(check, inputs), inputs.size() == 1 ? "is" : "are",
                         DbFromGain(top)))
        .measured = DbFromGain(top);
}

void DecideDistorted(Case& check) {
    // Gain that follows the sound bends it too.
    if (check.change.kind == LevelChange::Kind::Parts) {
        return;
    }
    const auto inputs = InputsWhere(check, [](const ShapeOfInput& shape) { return shape.distorted; });
    if (inputs.empty()) {
        return;
    }
    double worst = 0;
    for (const std::size_t input : inputs) {
        worst = std::max(worst, check.shapes[input].harmonics);
    }
    check
        .Add("distorted", inputs,
             fmt::format("{} {} harmonics of {:.1f} dB.", Who(check, inputs), inputs.size() == 1 ? "has" : "have",
                         PowerDb(worst)))
        .measured = PowerDb(worst);
}

void DecideHum(Case& check) {
    for (std::size_t mains = 0; mains < kMains.size(); ++mains) {
        const auto inputs = InputsWhere(check, [mains](const ShapeOfInput& shape) { return shape.mains == mains; });
        if (inputs.empty()) {
            continue;
        }
        double worst = 0;
        for (const std::size_t input : inputs) {
            worst = std::max(worst, check.shapes[input].humPower);
        }
        check
            .Add("hum", inputs,
                 fmt::format("Hum of {:g} Hz, {:.1f} dBFS, at input{} {}.", kMains[mains], PowerDb(worst),
                             inputs.size() == 1 ? "" : "s", InputList(inputs)))
            .measured = PowerDb(worst);
    }
}

void DecideUnsteady(Case& check) {
    if (check.unsteady) {
        const double wander = check.lineup.steadiness.Wander();
        check.Add("speed-unsteady", {}, fmt::format("The speed wanders by {:.3g} %.", wander * 100)).measured =
            wander * 1e6;
    }
}

}  // namespace

double ClippedGain(double part) {
    return 2 / std::numbers::pi * (std::asin(part) + part * std::sqrt(1 - part * part));
}

void FindShapes(Case& check) {
    const double least = std::max(kUnsteadyLeast, 4e-6 * check.Tolerance("speed"));
    check.unsteady = !check.facts.lossy.value_or(false) && check.lineup.steadiness.Wander() > least;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        check.shapes.push_back(ShapeOf(check, input));
        const LineFindings& lines = check.lineup.inputs[input].lines;
        if (!lines.harmonics.Empty()) {
            check.findings.sound.channels[input].distortion = lines.harmonics.QuantileDb(0.5);
        }
    }
}

void DecideShapes(Case& check) {
    DecideUnsteady(check);
    DecideClipped(check);
    DecideDistorted(check);
    DecideHum(check);
}

}  // namespace lineup::sound
