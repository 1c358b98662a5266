#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Matrix.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lineup::picture {

/// How numbers of Y'CbCr, or of R'G'B' seen as such, stand for codes: Y' 0 is black and 1 white, Cb and Cr go from -0.5
/// to 0.5.
struct CodeScale {
    bool isRgb = false;
    bool isRangeFull = false;  ///< codes of Y'CbCr are meant to be full range
    double top = 255;          ///< the greatest code, in 8-bit codes
    Matrix due = Identity();   ///< from R'G'B'

    [[nodiscard]] double LumaCodes() const { return isRgb || isRangeFull ? top : 219; }
    [[nodiscard]] double ChromaCodes() const { return isRgb || isRangeFull ? top : 224; }
    [[nodiscard]] double BlackCode() const { return isRgb || isRangeFull ? 0 : 16; }

    /// From the codes of a file.
    [[nodiscard]] Triple FromCodes(const Triple& codes) const;
    /// To the codes of a file, cut off where those end.
    [[nodiscard]] Triple ToCodes(const Triple& value) const;
};

enum class MatrixStep : std::uint8_t {
    None,
    NotConverted,
    ConvertedAgain,
    ConvertedAgainCut,  ///< by way of R'G'B' that ends at black and white
};
enum class RangeStep : std::uint8_t { None, Stretched, Squeezed, StretchedTwice, SqueezedTwice };
enum class SwapStep : std::uint8_t { None, Chroma, RedBlue };
enum class ToneStep : std::uint8_t {
    None,
    Gain,        ///< black stays
    GainOfCode,  ///< code 0 stays
    Contrast,    ///< the middle code stays
    Lift,        ///< white stays
    Offset,
    GainAndLift,
    Gamma,
    GammaOfCode,
    RgbGain,
    RgbLift,
    RgbGainAndLift,
    RgbGamma,
    SrgbOnceMore,
    SrgbOnceLess,
    WhiteClipped,
    BlackClipped,
};
enum class ColourStep : std::uint8_t { None, Saturation, Hue, Both, Missing };

/// What may have been done to the numbers, in this order, and how far.
struct Chain {
    MatrixStep matrix = MatrixStep::None;
    std::string other;  ///< the matrix that has a part in it
    RangeStep range = RangeStep::None;
    SwapStep swap = SwapStep::None;
    ToneStep tone = ToneStep::None;
    ColourStep colour = ColourStep::None;
    double gain = 1;   ///< of a tone step
    double lift = 0;   ///< the level that black has
    double gamma = 1;  ///< exponent
    double limit = 0;  ///< where it is clipped
    double saturation = 1;
    double hue = 0;  ///< radians

    [[nodiscard]] double Cost() const;

    [[nodiscard]] Chain WithoutTone() const;
    [[nodiscard]] Chain WithoutColour() const;

    /// What becomes of a colour before tone and colour steps.
    [[nodiscard]] Triple Before(const CodeScale& scale, const Triple& rgb) const;
    /// What tone and colour steps make of that.
    [[nodiscard]] Triple After(const CodeScale& scale, const Triple& value) const;
    /// All of it, in codes.
    [[nodiscard]] Triple Codes(const CodeScale& scale, const Triple& rgb) const {
        return scale.ToCodes(After(scale, Before(scale, rgb)));
    }
};

}  // namespace lineup::picture
