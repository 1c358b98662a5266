#include "Host/Lineup/Check/Picture/Decide/Coefficients.h"

#include "Host/Lineup/Check/Picture/LeastSquares.h"

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kTimesBetter = 4;
constexpr double kLeastShare = 0.001;  // that a coefficient is off

// How far luma is from what the shares make of the patches, codes.
struct Off {
    double most = 0;
    double all = 0;  // r.m.s.
};

Off LumaOff(const CodeScale& scale, std::span<const ColourPair> pairs, const Triple& shares) {
    Off result;
    double sum = 0;
    for (const ColourPair& pair : pairs) {
        const double due = shares[0] * pair.sent[0] + shares[1] * pair.sent[1] + shares[2] * pair.sent[2];
        const double off = (scale.FromCodes(pair.found)[0] - due) * scale.LumaCodes();
        result.most = std::max(result.most, std::abs(off));
        sum += off * off;
    }
    result.all = std::sqrt(sum / static_cast<double>(std::max<std::size_t>(pairs.size(), 1)));
    return result;
}

}  // namespace

std::optional<Triple> OddCoefficients(const CodeScale& scale, std::span<const ColourPair> pairs, double least) {
    LeastSquares<3> fit;
    for (const ColourPair& pair : pairs) {
        fit.Add(pair.sent, scale.FromCodes(pair.found)[0]);
    }
    const Triple shares = fit.Solve();
    const Triple& due = scale.due[0];
    double most = 0;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        most = std::max(most, std::abs(shares.at(i) - due.at(i)));
    }
    const Off ofDue = LumaOff(scale, pairs, due);
    const bool isBetter = LumaOff(scale, pairs, shares).all * kTimesBetter < ofDue.all;
    return isBetter && most > kLeastShare && ofDue.most > least ? std::optional(shares) : std::nullopt;
}

}  // namespace lineup::picture
