#include "Host/Lineup/Check/Picture/Decide/Coefficients.h"

#include "Host/Lineup/Check/Picture/LeastSquares.h"

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kTimesBetter = 4;
constexpr double kLeastShare = 0.001;  // that a coefficient is off

double LumaError(const CodeScale& scale, std::span<const ColourPair> pairs, const Triple& shares) {
    double sum = 0;
    for (const ColourPair& pair : pairs) {
        const double due = shares[0] * pair.sent[0] + shares[1] * pair.sent[1] + shares[2] * pair.sent[2];
        const double off = (scale.FromCodes(pair.found)[0] - due) * scale.LumaCodes();
        sum += off * off;
    }
    return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(pairs.size(), 1)));
}

}  // namespace

std::optional<Triple> OddCoefficients(const CodeScale& scale, std::span<const ColourPair> pairs) {
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
    const bool isBetter = LumaError(scale, pairs, shares) * kTimesBetter < LumaError(scale, pairs, due);
    return isBetter && most > kLeastShare ? std::optional(shares) : std::nullopt;
}

}  // namespace lineup::picture
