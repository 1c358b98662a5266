#include "Host/Lineup/Check/Picture/Find/EdgeProfile.h"

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kStrongest = 60;  // codes: stronger edges count no more
constexpr double kShortest = 0.2;  // of the frame
constexpr double kLongest = 2.6;
constexpr double kScaleStep = 1.004;

struct Tooth {
    double at;
    double weight;
};

// How much changes at each pixel's left or upper edge, over the whole line or column.
std::vector<double> Profile(const SmallRaster& small, bool upright) {
    const int across = upright ? small.width : small.height;
    const int along = upright ? small.height : small.width;
    std::vector<double> raw(static_cast<std::size_t>(across) + 1, 0);
    for (int a = 1; a < across; ++a) {
        double sum = 0;
        for (int l = 0; l < along; ++l) {
            double change = 0;
            for (std::size_t p = 0; p < small.planes.size(); ++p) {
                change += std::abs(static_cast<double>(upright ? small.At(p, a, l) - small.At(p, a - 1, l)
                                                               : small.At(p, l, a) - small.At(p, l, a - 1)));
            }
            sum += std::min(change, kStrongest);
        }
        raw[static_cast<std::size_t>(a)] = sum / along;
    }
    std::vector<double> smooth(raw.size(), 0);
    for (std::size_t i = 1; i + 1 < raw.size(); ++i) {
        smooth[i] = std::sqrt((raw[i - 1] + 2 * raw[i] + raw[i + 1]) / 4);
    }
    return smooth;
}

// The card's edges across this axis: how much changes there, as the picture's are counted.
std::vector<Tooth> Comb(const CardModel& model, bool upright) {
    std::vector<Tooth> comb;
    for (const CardEdge& edge : model.edges) {
        if (edge.isUpright != upright || edge.isBorder) {
            continue;
        }
        double contrast = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            contrast += std::abs(edge.after.at(i) - edge.before.at(i));
        }
        const double weight = std::min(contrast * 200, kStrongest) * (edge.to - edge.from);
        const auto same =
            std::ranges::find_if(comb, [&](const Tooth& tooth) { return std::abs(tooth.at - edge.at) < 1e-3; });
        if (same == comb.end()) {
            comb.push_back({edge.at, weight});
        } else {
            same->weight += weight;
        }
    }
    for (Tooth& tooth : comb) {
        tooth.weight = std::sqrt(tooth.weight);
    }
    std::ranges::sort(comb, {}, &Tooth::at);
    return comb;
}

double Score(const std::vector<double>& profile, const std::vector<Tooth>& comb, double start, double length) {
    double product = 0;
    double weights = 0;
    double all = 0;
    for (const Tooth& tooth : comb) {
        const double at = start + tooth.at * length;
        all += tooth.weight * tooth.weight;
        if (at < 1 || at >= static_cast<double>(profile.size()) - 2) {
            continue;
        }
        const auto left = static_cast<std::size_t>(at);
        const double share = at - static_cast<double>(left);
        product += tooth.weight * (profile[left] * (1 - share) + profile[left + 1] * share);
        weights += tooth.weight * tooth.weight;
    }
    return weights > all / 3 ? product / std::sqrt(weights) * std::sqrt(weights / all) : 0;
}

void Keep(std::vector<Span>& best, const Span& span, std::size_t most) {
    const auto near = std::ranges::find_if(best, [&](const Span& other) {
        return other.turned == span.turned && std::abs(other.start - span.start) < 2 &&
               std::abs(other.start + other.length - span.start - span.length) < 2;
    });
    if (near != best.end()) {
        if (near->score < span.score) {
            *near = span;
        }
        return;
    }
    if (best.size() < most) {
        best.push_back(span);
        return;
    }
    const auto least = std::ranges::min_element(best, {}, &Span::score);
    if (least->score < span.score) {
        *least = span;
    }
}

}  // namespace

std::vector<Span> LikelySpans(const SmallRaster& small, const CardModel& model, bool upright, std::size_t most) {
    const std::vector<double> profile = Profile(small, upright);
    const double side = upright ? small.width : small.height;
    std::vector<Span> best;
    for (const bool turned : {false, true}) {
        std::vector<Tooth> comb = Comb(model, upright);
        if (turned) {
            std::ranges::for_each(comb, [](Tooth& tooth) { tooth.at = 1 - tooth.at; });
        }
        double length = kShortest * side;
        while (length < kLongest * side) {
            double start = -length * 0.7;
            while (start < side - length * 0.3) {
                const double score = Score(profile, comb, start, length);
                if (best.size() < most || score > 0) {
                    Keep(best, {start, length, turned, score}, most);
                }
                start += 1;
            }
            length *= kScaleStep;
        }
    }
    std::ranges::sort(best, std::greater<>(), &Span::score);
    return best;
}

}  // namespace lineup::picture
