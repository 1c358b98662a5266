#include "Host/Lineup/Check/Picture/Decide/ChainFaults.h"

#include "Host/Lineup/Check/Picture/Decide/Verdict.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <numbers>

namespace lineup::picture {

namespace {

constexpr double kLeast = 0.01;  // of black and white, of two numbers that are found together
constexpr double kSetup = 0.075;

std::string MatrixText(const std::string& name) {
    return name.starts_with("bt") ? "BT." + name.substr(2) : name;
}

std::string MatrixWords(const Chain& chain, const std::string& due) {
    if (chain.matrix == MatrixStep::NotConverted) {
        return fmt::format("the numbers are those of {}, where {} is due", MatrixText(chain.other), MatrixText(due));
    }
    return fmt::format("the numbers were taken for {} and converted to {} once too often", MatrixText(chain.other),
                       MatrixText(due));
}

const char* RangeWords(RangeStep range) {
    switch (range) {
        case RangeStep::Stretched:
            return "limited range was stretched to full range";
        case RangeStep::StretchedTwice:
            return "limited range was stretched to full range twice";
        case RangeStep::Squeezed:
            return "the range was squeezed to a limited one once too often";
        case RangeStep::SqueezedTwice:
            return "the range was squeezed to a limited one twice too often";
        case RangeStep::None:
            break;
    }
    return "";
}

double WhiteOf(const Chain& chain) {
    return chain.lift + chain.gain;
}

std::string LiftWords(const Chain& chain) {
    const char* const setup = std::abs(chain.lift - kSetup) < 0.01 ? ": NTSC's setup of 7.5 %" : "";
    return fmt::format("black lies at {:.1f} %{}", chain.lift * 100, setup);
}

std::string GainWords(const Chain& chain) {
    return fmt::format("white lies at {:.1f} %", WhiteOf(chain) * 100);
}

std::string GammaWords(const Chain& chain) {
    if (chain.tone == ToneStep::SrgbOnceMore) {
        return "R'G'B' was encoded by sRGB's curve once too often";
    }
    if (chain.tone == ToneStep::SrgbOnceLess) {
        return "R'G'B' was decoded by sRGB's curve: it is linear";
    }
    return fmt::format("the middle went through an exponent of {:.3f}", chain.gamma);
}

std::string Sentence(std::string words) {
    words.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(words.front())));
    return words + ".";
}

void AddGain(const Chain& chain, std::vector<CheckFault>& faults) {
    faults.push_back(MakePictureFault("gain-wrong", WhiteOf(chain) * 100, 100, Sentence(GainWords(chain))));
}
void AddLift(const Chain& chain, std::vector<CheckFault>& faults) {
    faults.push_back(MakePictureFault("lift-wrong", chain.lift * 100, 0, Sentence(LiftWords(chain))));
}

void AddTone(const Chain& chain, const CodeScale& scale, std::vector<CheckFault>& faults) {
    switch (chain.tone) {
        case ToneStep::None:
            return;
        case ToneStep::Gain:
        case ToneStep::GainOfCode:
        case ToneStep::Contrast:
        case ToneStep::RgbGain:
            return AddGain(chain, faults);
        case ToneStep::Lift:
        case ToneStep::RgbLift:
        case ToneStep::Offset:
            return AddLift(chain, faults);
        case ToneStep::GainAndLift:
        case ToneStep::RgbGainAndLift:
            if (std::abs(WhiteOf(chain) - 1) > kLeast) {
                AddGain(chain, faults);
            }
            if (std::abs(chain.lift) > kLeast) {
                AddLift(chain, faults);
            }
            return;
        case ToneStep::Gamma:
        case ToneStep::GammaOfCode:
        case ToneStep::RgbGamma:
            faults.push_back(MakePictureFault("gamma-wrong", chain.gamma, 1, Sentence(GammaWords(chain))));
            return;
        case ToneStep::SrgbOnceMore:
        case ToneStep::SrgbOnceLess:
            faults.push_back(MakePictureFault("gamma-wrong", chain.tone == ToneStep::SrgbOnceMore ? 1 / 2.2 : 2.2, 1,
                                              Sentence(GammaWords(chain))));
            return;
        case ToneStep::WhiteClipped: {
            const double code = scale.BlackCode() + chain.limit * scale.LumaCodes();
            faults.push_back(MakePictureFault("whites-clipped", code, scale.BlackCode() + scale.LumaCodes(),
                                              fmt::format("What is brighter than code {:.0f} is cut off.", code)));
            return;
        }
        case ToneStep::BlackClipped: {
            const double code = scale.BlackCode() + chain.limit * scale.LumaCodes();
            faults.push_back(MakePictureFault("blacks-crushed", code, scale.BlackCode(),
                                              fmt::format("What is darker than code {:.0f} is cut off.", code)));
            return;
        }
    }
}

}  // namespace

std::vector<CheckFault> FaultsOf(const Chain& chain, const CodeScale& scale, const std::string& due) {
    std::vector<CheckFault> faults;
    if (chain.matrix != MatrixStep::None) {
        faults.push_back(MakePictureFault("matrix-wrong", {}, {}, Sentence(MatrixWords(chain, due))));
    }
    if (scale.isRangeFull && chain.range == RangeStep::Squeezed) {
        faults.push_back(
            MakePictureFault("tags-wrong", {}, {}, "The numbers are of limited range, the file says full."));
    } else if (chain.range != RangeStep::None) {
        faults.push_back(MakePictureFault("range-wrong", {}, {}, Sentence(RangeWords(chain.range))));
    }
    if (chain.swap != SwapStep::None) {
        faults.push_back(
            MakePictureFault("chroma-swapped", {}, {},
                             chain.swap == SwapStep::Chroma ? "Cb and Cr are swapped." : "Red and blue are swapped."));
    }
    AddTone(chain, scale, faults);
    if (chain.colour == ColourStep::Missing) {
        faults.push_back(MakePictureFault("chroma-missing", {}, {}, "There is no colour."));
    }
    if (chain.colour == ColourStep::Saturation || chain.colour == ColourStep::Both) {
        faults.push_back(
            MakePictureFault("saturation-wrong", chain.saturation * 100, 100,
                             fmt::format("Colours have {:.1f} % of their strength.", chain.saturation * 100)));
    }
    if (chain.colour == ColourStep::Hue || chain.colour == ColourStep::Both) {
        const double degrees = chain.hue * 180 / std::numbers::pi;
        faults.push_back(
            MakePictureFault("hue-wrong", degrees, 0, fmt::format("Colours are turned by {:.1f} degrees.", degrees)));
    }
    return faults;
}

std::string WordsFor(const Chain& chain, const std::string& due) {
    std::vector<std::string> words;
    for (const CheckFault& fault : FaultsOf(chain, {}, due)) {
        std::string text = fault.text;
        text.pop_back();
        if (!text.starts_with("NTSC") && !text.starts_with("R'") && !text.starts_with("Cb")) {
            text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(text.front())));
        }
        words.push_back(text);
    }
    return fmt::format("{}", fmt::join(words, ", "));
}

}  // namespace lineup::picture
