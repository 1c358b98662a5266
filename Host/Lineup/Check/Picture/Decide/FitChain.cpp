#include "Host/Lineup/Check/Picture/Decide/FitChain.h"

#include "Host/Lineup/Check/Picture/LeastSquares.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>

namespace lineup::picture {

namespace {

constexpr std::size_t kTrimmed = 10;  // one patch in so many may be covered by something
constexpr double kSlack = 0.35;       // codes: rounding
constexpr double kSlackShare = 1.25;  // of what the best explanation leaves

struct Value {
    Triple before{};
    Triple found{};
    double weight = 1;
};

// What was cut off at either end of the codes says nothing of how far it went.
std::vector<Value> ValuesOf(const CodeScale& scale, const Chain& chain, std::span<const ColourPair> pairs) {
    std::vector<Value> values;
    for (const ColourPair& pair : pairs) {
        Value value{chain.Before(scale, pair.sent), scale.FromCodes(pair.found), 1};
        const bool isCut =
            std::ranges::any_of(pair.found, [&](double code) { return code < 1 || code > scale.top - 1; });
        value.weight = isCut ? 0.05 : 1;
        values.push_back(value);
    }
    return values;
}

// Luma as `lift` + `gain` of itself, by least squares over what is left free.
void FitLine(const CodeScale& scale, const std::vector<Value>& values, Chain& chain) {
    const double zero = -scale.BlackCode() / scale.LumaCodes();
    const double middle = (128 - scale.BlackCode()) / scale.LumaCodes();
    const bool withColour =
        chain.tone == ToneStep::RgbGain || chain.tone == ToneStep::RgbLift || chain.tone == ToneStep::RgbGainAndLift;
    // found - fixed = unknown * lever, of one unknown: gain - 1 or the level of black.
    const auto one = [&](const std::function<double(double)>& lever, double colourLever) {
        double product = 0;
        double square = 0;
        for (const Value& value : values) {
            const double l = lever(value.before[0]);
            product += value.weight * l * (value.found[0] - value.before[0]);
            square += value.weight * l * l;
            for (std::size_t i = 1; i < 3 && withColour; ++i) {
                const double c = colourLever * value.before.at(i);
                product += value.weight * c * (value.found.at(i) - value.before.at(i));
                square += value.weight * c * c;
            }
        }
        return square > 0 ? product / square : 0;
    };
    const auto gainAbout = [&](double pivot) {
        const double more = one([pivot](double y) { return y - pivot; }, 1);
        chain.gain = 1 + more;
        chain.lift = -more * pivot;
    };
    switch (chain.tone) {
        case ToneStep::Gain:
        case ToneStep::RgbGain:
            return gainAbout(0);
        case ToneStep::GainOfCode:
            return gainAbout(zero);
        case ToneStep::Contrast:
            return gainAbout(middle);
        case ToneStep::Lift:
        case ToneStep::RgbLift:
            chain.lift = one([](double y) { return 1 - y; }, -1);
            chain.gain = 1 - chain.lift;
            return;
        case ToneStep::Offset:
            chain.lift = one([](double) { return 1.0; }, 0);
            chain.gain = 1;
            return;
        default:
            break;
    }
    LeastSquares<2> both;
    for (const Value& value : values) {
        both.Add({1, value.before[0]}, value.found[0], value.weight);
        for (std::size_t i = 1; i < 3 && withColour; ++i) {
            both.Add({0, value.before.at(i)}, value.found.at(i), value.weight);
        }
    }
    std::tie(chain.lift, chain.gain) = std::tuple_cat(both.Solve());
}

// The least of a function with one valley.
double Lowest(double low, double high, const std::function<double(double)>& function) {
    constexpr double kGolden = 0.6180339887498949;
    constexpr int kSteps = 24;
    double left = high - kGolden * (high - low);
    double right = low + kGolden * (high - low);
    double atLeft = function(left);
    double atRight = function(right);
    for (int i = 0; i < kSteps; ++i) {
        if (atLeft < atRight) {
            high = right;
            right = left;
            atRight = atLeft;
            left = high - kGolden * (high - low);
            atLeft = function(left);
        } else {
            low = left;
            left = right;
            atLeft = atRight;
            right = low + kGolden * (high - low);
            atRight = function(right);
        }
    }
    return (low + high) / 2;
}

void FitColour(const CodeScale& scale, const std::vector<Value>& values, Chain& chain) {
    double along = 0;
    double across = 0;
    double square = 0;
    Chain plain = chain;
    plain.saturation = 1;
    plain.hue = 0;
    for (const Value& value : values) {
        const Triple before = plain.After(scale, value.before);
        along += value.weight * (before[1] * value.found[1] + before[2] * value.found[2]);
        across += value.weight * (before[1] * value.found[2] - before[2] * value.found[1]);
        square += value.weight * (before[1] * before[1] + before[2] * before[2]);
    }
    if (square <= 0) {
        return;
    }
    switch (chain.colour) {
        case ColourStep::None:
            break;
        case ColourStep::Saturation:
            chain.saturation = along / square;
            break;
        case ColourStep::Hue:
            chain.hue = std::atan2(across, along);
            break;
        case ColourStep::Both:
            chain.hue = std::atan2(across, along);
            chain.saturation = std::hypot(along, across) / square;
            break;
        case ColourStep::Missing:
            chain.saturation = 0;
            break;
    }
}

bool HasGamma(ToneStep tone) {
    return tone == ToneStep::Gamma || tone == ToneStep::GammaOfCode || tone == ToneStep::RgbGamma;
}

constexpr std::array kTones = {
    ToneStep::None,         ToneStep::Gain,         ToneStep::GainOfCode,   ToneStep::Contrast,
    ToneStep::Lift,         ToneStep::Offset,       ToneStep::GainAndLift,  ToneStep::Gamma,
    ToneStep::GammaOfCode,  ToneStep::RgbGain,      ToneStep::RgbLift,      ToneStep::RgbGainAndLift,
    ToneStep::RgbGamma,     ToneStep::SrgbOnceMore, ToneStep::SrgbOnceLess, ToneStep::WhiteClipped,
    ToneStep::BlackClipped,
};

bool IsOfRgb(ToneStep tone) {
    return tone >= ToneStep::RgbGain && tone <= ToneStep::SrgbOnceLess;
}

bool IsClip(ToneStep tone) {
    return tone == ToneStep::WhiteClipped || tone == ToneStep::BlackClipped;
}

// A step that does next to nothing does not count.
bool IsWorthIt(const Chain& chain) {
    const bool hasTone = std::abs(chain.gain - 1) > 0.008 || std::abs(chain.lift) > 0.006 ||
                         std::abs(chain.gamma - 1) > 0.008 || chain.tone == ToneStep::SrgbOnceMore ||
                         chain.tone == ToneStep::SrgbOnceLess || IsClip(chain.tone) || chain.tone == ToneStep::None;
    const bool hasColour =
        chain.colour == ColourStep::None || chain.colour == ColourStep::Missing ||
        (chain.saturation > 0.02 && (std::abs(chain.saturation - 1) > 0.01 || std::abs(chain.hue) > 0.01));
    return hasTone && hasColour;
}

constexpr std::array kColours = {ColourStep::None, ColourStep::Saturation, ColourStep::Hue, ColourStep::Both,
                                 ColourStep::Missing};

/// Every matrix, range and swap that a path may have, without a tone or a colour.
std::vector<Chain> DiscreteChains(const CodeScale& scale) {
    std::vector<Chain> starts{Chain{}};
    for (const NamedMatrix& named : NamedMatrices()) {
        if (MatrixOf(named.name) == scale.due) {
            continue;
        }
        for (const MatrixStep step :
             {MatrixStep::NotConverted, MatrixStep::ConvertedAgain, MatrixStep::ConvertedAgainCut}) {
            starts.push_back({.matrix = step, .other = std::string(named.name)});
        }
    }
    std::vector<Chain> chains;
    for (const Chain& start : starts) {
        for (const RangeStep range : {RangeStep::None, RangeStep::Stretched, RangeStep::Squeezed,
                                      RangeStep::StretchedTwice, RangeStep::SqueezedTwice}) {
            for (const SwapStep swap : {SwapStep::None, SwapStep::Chroma, SwapStep::RedBlue}) {
                Chain chain = start;
                chain.range = range;
                chain.swap = swap;
                chains.push_back(chain);
            }
        }
    }
    return chains;
}

/// `steps` is what the chain costs without its tone and colour.
bool IsTooMuch(const Chain& chain, double steps) {
    const bool isSearch = HasGamma(chain.tone) || IsClip(chain.tone);
    return (IsOfRgb(chain.tone) && chain.colour != ColourStep::None) || (isSearch && steps > 1.2) ||
           (steps > 2.2 && chain.Cost() > steps) || chain.Cost() > 4.5;
}

}  // namespace

double ChainError(const CodeScale& scale, const Chain& chain, std::span<const ColourPair> pairs) {
    std::vector<double> squares;
    for (const ColourPair& pair : pairs) {
        const Triple codes = chain.Codes(scale, pair.sent);
        double square = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            square += (codes.at(i) - pair.found.at(i)) * (codes.at(i) - pair.found.at(i));
        }
        squares.push_back(square);
    }
    std::ranges::sort(squares);
    squares.resize(squares.size() - squares.size() / kTrimmed);
    double sum = 0;
    for (const double square : squares) {
        sum += square;
    }
    return std::sqrt(sum / (3.0 * static_cast<double>(std::max<std::size_t>(squares.size(), 1))));
}

FittedChain FitChain(const CodeScale& scale, Chain chain, std::span<const ColourPair> pairs) {
    const std::vector<Value> values = ValuesOf(scale, chain, pairs);
    if (HasGamma(chain.tone)) {
        chain.gamma = std::exp(Lowest(std::log(0.3), std::log(3.3), [&](double exponent) {
            Chain tried = chain;
            tried.gamma = std::exp(exponent);
            FitColour(scale, values, tried);
            return ChainError(scale, tried, pairs);
        }));
    } else if (IsClip(chain.tone)) {
        const bool isWhite = chain.tone == ToneStep::WhiteClipped;
        chain.limit = Lowest(isWhite ? 0.3 : 0.0, isWhite ? 1.0 : 0.5, [&](double limit) {
            Chain tried = chain;
            tried.limit = limit;
            FitColour(scale, values, tried);
            return ChainError(scale, tried, pairs);
        });
    } else if (chain.tone != ToneStep::None && chain.tone != ToneStep::SrgbOnceMore &&
               chain.tone != ToneStep::SrgbOnceLess) {
        FitLine(scale, values, chain);
    }
    FitColour(scale, values, chain);
    return {chain, ChainError(scale, chain, pairs)};
}

std::vector<FittedChain> FitAllChains(const CodeScale& scale, std::span<const ColourPair> pairs) {
    std::vector<FittedChain> fitted;
    for (const Chain& chain : DiscreteChains(scale)) {
        // More than two discrete steps and a search at once explain anything.
        const double steps = chain.Cost();
        if (chain.matrix == MatrixStep::ConvertedAgainCut && steps > 1) {
            continue;
        }
        for (const ToneStep tone : kTones) {
            for (const ColourStep colour : kColours) {
                Chain tried = chain;
                tried.tone = tone;
                tried.colour = colour;
                if (IsTooMuch(tried, steps)) {
                    continue;
                }
                const FittedChain one = FitChain(scale, tried, pairs);
                if (IsWorthIt(one.chain)) {
                    fitted.push_back(one);
                }
            }
        }
    }
    return fitted;
}

const FittedChain& Simplest(std::span<const FittedChain> chains) {
    const double least = std::ranges::min_element(chains, {}, &FittedChain::error)->error;
    const double enough = least * kSlackShare + kSlack;
    const FittedChain* best = &chains.front();
    for (const FittedChain& one : chains) {
        if (one.error > enough) {
            continue;
        }
        const double cost = one.chain.Cost();
        const double before = best->chain.Cost();
        if (best->error > enough || cost < before - 0.15 || (cost < before + 0.15 && one.error < best->error)) {
            best = &one;
        }
    }
    return *best;
}

std::vector<const FittedChain*> AsGood(std::span<const FittedChain> chains, const FittedChain& best) {
    std::vector<const FittedChain*> others;
    for (const FittedChain& one : chains) {
        if (&one != &best && one.error <= best.error + kSlack / 2 && one.chain.Cost() <= best.chain.Cost() + 0.15) {
            others.push_back(&one);
        }
    }
    return others;
}

}  // namespace lineup::picture
