#include <lineup/Level.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Measure/ClippedSine.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace lineup::sound {

namespace {

constexpr double kFlatTops = 0.07;      // of the samples: a sine has 0.02 so near to its extremes
constexpr double kOverBeside = 8;       // in power: lines against what lies between them
constexpr double kLeastClipped = 1e-5;  // power of harmonics: tops that are cut have some
constexpr double kMostOfHarmonics = 0.5;
constexpr double kLeftOfSwing = 0.1;  // of a swing: what goes with it
constexpr double kUnsteadyLeast = 20e-6;

double PowerOf(double db) {
    return std::pow(10, db / 10);
}

double PowerDb(double power) {
    return 10 * std::log10(std::max(power, 1e-18));
}

// Harmonics in parts of the tone's power, where they stand out of the noise and are not those of the mains that hum.
double HarmonicsOf(const LineFindings& lines, std::optional<std::size_t> mains) {
    const LevelTally& heard = mains ? lines.clear[*mains] : lines.harmonics;
    const double power = heard.Empty() ? 0 : PowerOf(heard.QuantileDb(0.5));
    return power > kOverBeside * PowerOf(lines.beside.QuantileDb(0.5)) ? power : 0;
}

// The same where noise hides them in single looks: harmonics keep their phase against the tone, and noise does not.
double HarmonicsUnderNoise(const LineFindings& lines) {
    constexpr double kFewest = 3;        // harmonics beside which noise is known
    constexpr double kBeyondNoise = 16;  // in power: once in ten million by chance
    double noise = 0;
    double count = 0;
    for (const HarmonicTally& harmonic : lines.harmonic) {
        noise += harmonic.Doubt() * harmonic.Doubt();
        count += harmonic.weight > 0 ? 1 : 0;
    }
    double power = 0;
    for (const HarmonicTally& harmonic : lines.harmonic) {
        const double heard = std::norm(harmonic.Mean());
        power += count >= kFewest && heard > kBeyondNoise * noise / count ? heard : 0;
    }
    return power;
}

// What a codec leaves under a tone it leaves at some harmonics more than between them: where they are a small part of
// it, they are its own.
bool IsOfCodec(const Case& check, std::size_t input, double harmonics) {
    constexpr double kSmallPart = 0.1;  // of the power
    return harmonics < kSmallPart * std::pow(CodecNoise(check, input), 2);
}

// Where the tops are cut off. Many samples lie by the extremes then, and the fundamental and the extremes tell how much
// is gone; where something else lies over them, the harmonics tell it.
void FindClipping(const Case& check, std::size_t input, ShapeOfInput& shape) {
    const InputFindings& found = check.lineup->inputs[input];
    const double flat = found.samples > 0 ? found.tops / found.samples / 2 : 0;
    const double zero =
        found.dc.count > 0 ? found.dc.Mean() : 0;  // it may have moved before they were cut off, or after
    const double top = std::min(std::max(-found.least, found.most), std::max(zero - found.least, found.most - zero));
    const double fundamental = LoudTone(check, input);
    if (flat > kFlatTops && top > 0 && fundamental > top) {
        shape.clipped = PartOfFundamental(fundamental / top);
        shape.top = top;
    } else if (const auto part = PartOfHarmonics(found.lines); part && !check.unsteady) {
        shape.clipped = *part;
        shape.top = fundamental / ClippedGain(*part) * *part;
    }
}

// Where the highest tops are flat, be it in a small part of the tones: what lies there is known to the sample.
void FindFlatTops(const Case& check, std::size_t input, ShapeOfInput& shape) {
    const InputFindings& found = check.lineup->inputs[input];
    const auto top = found.flat.Height(found.dc.count > 0 ? found.dc.Mean() : 0);
    if (top && check.At(input).sounds) {
        shape.cut = true;
        shape.top = *top;
        shape.clipped = PartOfFundamental(LoudTone(check, input) / *top);
    }
}

void FindHum(const Case& check, std::size_t input, ShapeOfInput& shape) {
    const auto& channel = check.At(input).channel;
    if (check.facts->lossy.value_or(false) && channel && HasLowTone(check, *channel)) {
        return;
    }
    const LineFindings& lines = check.lineup->inputs[input].lines;
    const double least = PowerOf(check.Tolerance("hum"));
    for (std::size_t mains = 0; mains < kMains.size(); ++mains) {
        for (const HumTally* hum : {&lines.hum[mains], &lines.moved[mains]}) {
            const double power = hum->power.Empty() ? 0 : PowerOf(hum->power.QuantileDb(0.5));
            if (power > least && power > kOverBeside * PowerOf(hum->beside.QuantileDb(0.5)) && power > shape.humPower) {
                shape.humPower = power;
                shape.mains = mains;
            }
        }
    }
}

ShapeOfInput ShapeOf(const Case& check, std::size_t input) {
    const LineFindings& lines = check.lineup->inputs[input].lines;
    ShapeOfInput shape;
    FindHum(check, input, shape);
    shape.harmonics = HarmonicsOf(lines, shape.mains);
    if (shape.harmonics == 0 && !shape.mains && !check.facts->lossy.value_or(false)) {
        shape.harmonics = HarmonicsUnderNoise(lines);
    }
    if (IsOfCodec(check, input, shape.harmonics)) {
        shape.harmonics = 0;
    }
    if (shape.harmonics > kLeastClipped) {
        FindClipping(check, input, shape);
    }
    if (shape.clipped == 1) {
        FindFlatTops(check, input, shape);
    }
    const double limit = PowerOf(check.Tolerance("distortion"));
    shape.distorted =
        shape.clipped < 1 ? std::pow(BesideClipped(lines, shape.clipped), 2) > limit : shape.harmonics > limit;
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

// The most of a figure, at these inputs.
double MostOf(const Case& check, const std::vector<std::size_t>& inputs, double ShapeOfInput::*figure) {
    double most = 0;
    for (const std::size_t input : inputs) {
        most = std::max(most, check.shapes[input].*figure);
    }
    return most;
}

void DecideClipped(Case& check) {
    const auto inputs = InputsWhere(check, [](const ShapeOfInput& shape) { return shape.clipped < 1 || shape.cut; });
    if (inputs.empty()) {
        return;
    }
    const double top = MostOf(check, inputs, &ShapeOfInput::top);
    AddFault(check, "clipped", inputs,
             fmt::format("{} {} cut off at {:.2f} dBFS.", Who(check, inputs), inputs.size() == 1 ? "is" : "are",
                         DbFromGain(top)))
        .measured = DbFromGain(top);
}

// Gain that follows the sound bends tones too. It goes up and down twice a period, and lags behind: its third harmonic
// lies across that of a bend, which has the phase of the tone. By how much the bend's stands out.
double BendBesideGain(const LineFindings& lines) {
    constexpr double kAlong = 0.3;  // of what lies across: no gain lags by exactly a quarter of a turn
    constexpr double kDoubts = 4;
    const HarmonicTally& third = lines.harmonic[1];
    return std::abs(third.Mean().real()) - kAlong * std::abs(third.Mean().imag()) - kDoubts * third.Doubt();
}

// Of inputs that are bent while gain follows the sound: those at which something else than the gain does it. Of the
// others that is not known.
std::vector<std::size_t> BentBesideGain(const Case& check) {
    std::vector<std::size_t> inputs = InputsWhere(check, [](const ShapeOfInput& shape) { return shape.distorted; });
    const double limit = std::pow(10, check.Tolerance("distortion") / 20);
    const bool any = !inputs.empty();
    std::erase_if(inputs,
                  [&](std::size_t input) { return BendBesideGain(check.lineup->inputs[input].lines) <= limit; });
    if (any && inputs.empty()) {
        check.Note("distortion-not-known",
                   "Gain that follows the sound bends tones by itself; whether something else distorts them cannot be "
                   "told. A recording from before the limiter would settle it.");
    }
    return inputs;
}

void DecideDistorted(Case& check) {
    const bool moves = check.change.kind != LevelChange::Kind::None;  // what is cut off then differs
    const auto inputs = check.change.kind == LevelChange::Kind::Parts
                            ? BentBesideGain(check)
                            : InputsWhere(check, [moves](const ShapeOfInput& shape) {
                                  return shape.distorted && (shape.clipped == 1 || !moves);
                              });
    if (inputs.empty()) {
        return;
    }
    const double worst = MostOf(check, inputs, &ShapeOfInput::harmonics);
    AddFault(check, "distorted", inputs,
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
        const double worst = MostOf(check, inputs, &ShapeOfInput::humPower);
        AddFault(check, "hum", inputs,
                 fmt::format("Hum of {:g} Hz, {:.1f} dBFS, at input{} {}.", kMains[mains], PowerDb(worst),
                             inputs.size() == 1 ? "" : "s", InputList(inputs)))
            .measured = PowerDb(worst);
    }
}

// What was found of the speed's swing, r.m.s., relative.
double SwingOf(const Placing& placing) {
    double squares = 0;
    for (const Wander& wander : placing.wanders) {
        squares += wander.Depth() * wander.Depth() / 2;
    }
    return std::sqrt(squares);
}

void DecideUnsteady(Case& check) {
    if (const double wander = check.wander; wander > 0) {
        AddFault(check, "speed-unsteady", {}, fmt::format("The speed wanders by {:.3g} %.", wander * 100)).measured =
            wander * 1e6;
    }
}

// What is cut off at one input may be too at others, where noise or hum hides it: their tones are higher than the tops
// may be, and have the harmonics.
void FindSharedClipping(Case& check) {
    std::vector<double> tops;
    for (const ShapeOfInput& shape : check.shapes) {
        if (shape.clipped < 1) {
            tops.push_back(shape.top);
        }
    }
    const double top = MedianOf(std::move(tops));
    for (std::size_t input = 0; top > 0 && input < check.Inputs(); ++input) {
        ShapeOfInput& shape = check.shapes[input];
        const double part = PartOfFundamental(LoudTone(check, input) / top);
        const LevelTally& harmonics = check.lineup->inputs[input].lines.harmonics;
        const double heard = harmonics.Empty() ? 0 : PowerOf(harmonics.QuantileDb(0.9));
        if (shape.clipped == 1 && part < 1 && check.At(input).sounds &&
            heard > kMostOfHarmonics * std::pow(ClippedHarmonic(part, 3), 2)) {
            shape.clipped = part;
            shape.top = top;
            shape.distorted = false;
        }
    }
}

}  // namespace

void FindShapes(Case& check) {
    const double least = std::max(kUnsteadyLeast, 4e-6 * check.Tolerance("speed"));
    const double taken = SwingOf(check.lineup->placing);
    check.unsteady = !check.facts->lossy.value_or(false) &&
                     check.lineup->steadiness.Wander() > std::max(least, kLeftOfSwing * taken);
    check.wander = std::hypot(check.unsteady ? check.lineup->steadiness.Wander() : 0, taken);
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        check.shapes.push_back(ShapeOf(check, input));
        const LineFindings& lines = check.lineup->inputs[input].lines;
        if (!lines.harmonics.Empty()) {
            check.findings->sound.channels[input].distortion = lines.harmonics.QuantileDb(0.5);
        }
    }
    FindSharedClipping(check);
}

void DecideShapes(Case& check) {
    DecideUnsteady(check);
    DecideClipped(check);
    DecideDistorted(check);
    DecideHum(check);
}

}  // namespace lineup::sound
