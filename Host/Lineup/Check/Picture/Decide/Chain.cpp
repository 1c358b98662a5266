#include "Host/Lineup/Check/Picture/Decide/Chain.h"

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

double Power(double value, double exponent) {
    return value < 0 ? -std::pow(-value, exponent) : std::pow(value, exponent);
}

// IEC 61966-2-1.
double SrgbEncoded(double value) {
    return value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
}
double SrgbDecoded(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

template <class Curve>
Triple OnRgb(const CodeScale& scale, const Triple& value, const Curve& curve) {
    Triple rgb = Multiply(Inverse(scale.due), value);
    for (double& component : rgb) {
        component = curve(component);
    }
    return Multiply(scale.due, rgb);
}

// R'G'B' keeps its shape; Y'CbCr has 219 steps of luma, and 224 of colour.
Triple Stretch(const CodeScale& scale, const Triple& value) {
    const double colour = scale.isRgb ? scale.top / 219 : scale.top / 224;
    return {(value[0] * scale.top - 16) / 219, value[1] * colour, value[2] * colour};
}

Triple Squeeze(const CodeScale& scale, const Triple& value) {
    const double colour = scale.isRgb ? 219 / scale.top : 224 / scale.top;
    return {(219 * value[0] + 16) / scale.top, value[1] * colour, value[2] * colour};
}

}  // namespace

Triple CodeScale::FromCodes(const Triple& codes) const {
    if (isRgb) {
        return Multiply(due, Triple{codes[0] / top, codes[1] / top, codes[2] / top});
    }
    return {(codes[0] - BlackCode()) / LumaCodes(), (codes[1] - 128) / ChromaCodes(), (codes[2] - 128) / ChromaCodes()};
}

Triple CodeScale::ToCodes(const Triple& value) const {
    Triple codes{};
    if (isRgb) {
        codes = Multiply(Inverse(due), value);
        for (double& code : codes) {
            code *= top;
        }
    } else {
        codes = {value[0] * LumaCodes() + BlackCode(), value[1] * ChromaCodes() + 128, value[2] * ChromaCodes() + 128};
    }
    for (double& code : codes) {
        code = std::clamp(code, 0.0, top);
    }
    return codes;
}

double Chain::Cost() const {
    double cost = 0;
    cost += matrix == MatrixStep::None ? 0 : 1;
    cost += range == RangeStep::None                                                  ? 0
            : range == RangeStep::StretchedTwice || range == RangeStep::SqueezedTwice ? 1.5
                                                                                      : 1;
    cost += swap == SwapStep::None ? 0 : 1;
    switch (tone) {
        case ToneStep::None:
            break;
        case ToneStep::SrgbOnceMore:
        case ToneStep::SrgbOnceLess:
            cost += 1;
            break;
        case ToneStep::GainAndLift:
        case ToneStep::RgbGainAndLift:
            cost += 2.2;
            break;
        default:
            cost += 1.1;
    }
    cost += colour == ColourStep::None ? 0 : colour == ColourStep::Both ? 2.2 : colour == ColourStep::Missing ? 1 : 1.1;
    return cost;
}

Chain Chain::WithoutTone() const {
    Chain less{.matrix = matrix, .other = other, .range = range, .swap = swap};
    less.colour = colour;
    less.saturation = saturation;
    less.hue = hue;
    return less;
}

Chain Chain::WithoutColour() const {
    Chain less = *this;
    less.colour = ColourStep::None;
    less.saturation = 1;
    less.hue = 0;
    return less;
}

Triple Chain::Before(const CodeScale& scale, const Triple& rgb) const {
    Triple value = Multiply(scale.due, rgb);
    if (matrix == MatrixStep::NotConverted) {
        value = Multiply(MatrixOf(other), rgb);
    } else if (matrix != MatrixStep::None) {
        Triple theirs = Multiply(Inverse(MatrixOf(other)), value);
        for (double& component : theirs) {
            component = matrix == MatrixStep::ConvertedAgainCut ? std::clamp(component, 0.0, 1.0) : component;
        }
        value = Multiply(scale.due, theirs);
    }
    switch (range) {
        case RangeStep::None:
            break;
        case RangeStep::StretchedTwice:
            value = Stretch(scale, value);
            [[fallthrough]];
        case RangeStep::Stretched:
            value = Stretch(scale, value);
            break;
        case RangeStep::SqueezedTwice:
            value = Squeeze(scale, value);
            [[fallthrough]];
        case RangeStep::Squeezed:
            value = Squeeze(scale, value);
            break;
    }
    if (swap == SwapStep::Chroma) {
        std::swap(value[1], value[2]);
    } else if (swap == SwapStep::RedBlue) {
        Triple swapped = Multiply(Inverse(scale.due), value);
        std::swap(swapped[0], swapped[2]);
        value = Multiply(scale.due, swapped);
    }
    return value;
}

Triple Chain::After(const CodeScale& scale, const Triple& value) const {
    Triple result = value;
    const double zero = -scale.BlackCode() / scale.LumaCodes();  // code 0
    switch (tone) {
        case ToneStep::None:
            break;
        case ToneStep::Gain:
        case ToneStep::GainOfCode:
        case ToneStep::Contrast:
        case ToneStep::Lift:
        case ToneStep::Offset:
        case ToneStep::GainAndLift:
            result[0] = lift + gain * value[0];
            break;
        case ToneStep::Gamma:
            result[0] = Power(value[0], gamma);
            break;
        case ToneStep::GammaOfCode: {
            const double whole = scale.top / scale.LumaCodes();
            result[0] = zero + whole * Power((value[0] - zero) / whole, gamma);
            break;
        }
        case ToneStep::RgbGain:
        case ToneStep::RgbLift:
        case ToneStep::RgbGainAndLift:
            result = {lift + gain * value[0], gain * value[1], gain * value[2]};
            break;
        case ToneStep::RgbGamma:
            result = OnRgb(scale, value, [this](double component) { return Power(component, gamma); });
            break;
        case ToneStep::SrgbOnceMore:
            result = OnRgb(scale, value, SrgbEncoded);
            break;
        case ToneStep::SrgbOnceLess:
            result = OnRgb(scale, value, SrgbDecoded);
            break;
        case ToneStep::WhiteClipped:
            result[0] = std::min(value[0], limit);
            break;
        case ToneStep::BlackClipped:
            result[0] = std::max(value[0], limit);
            break;
    }
    const double u = result[1];
    const double v = result[2];
    result[1] = saturation * (std::cos(hue) * u - std::sin(hue) * v);
    result[2] = saturation * (std::sin(hue) * u + std::cos(hue) * v);
    return result;
}

}  // namespace lineup::picture
