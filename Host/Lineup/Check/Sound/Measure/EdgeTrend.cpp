#include "Host/Lineup/Check/Sound/Measure/EdgeTrend.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kLeastApart = 1;       // s: of edges that tell a slope
constexpr double kLeastSlope = 0.0002;  // s a second
constexpr double kOneMoment = 0.03;     // s
constexpr double kMuchLess = 0.5;
constexpr std::size_t kFewestEdges = 8;
constexpr std::size_t kFewestPairs = 12;

EdgesOfInputs Less(EdgesOfInputs edges, const auto& late) {
    for (auto& input : edges) {
        for (LateEdge& edge : input) {
            edge.late -= late(edge);
        }
    }
    return edges;
}

double UsualLate(const std::vector<LateEdge>& edges) {
    std::vector<double> late;
    late.reserve(edges.size());
    for (const LateEdge& edge : edges) {
        late.push_back(edge.late);
    }
    return MedianOf(std::move(late));
}

// By all pairs of edges of an input: one that is wrong does not count for much.
std::optional<double> SlopeOf(const EdgesOfInputs& edges) {
    std::vector<Vote> slopes;
    for (const auto& input : edges) {
        for (std::size_t i = 0; i < input.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                const double apart = input[i].at - input[k].at;
                if (std::abs(apart) > kLeastApart) {
                    slopes.push_back({(input[i].late - input[k].late) / apart, std::abs(apart)});
                }
            }
        }
    }
    return slopes.size() < kFewestPairs ? std::nullopt : std::optional(WeightedMedian(std::move(slopes)));
}

// What one jump of time would leave of the scatter, wherever it were.
double ScatterBesideJump(const EdgesOfInputs& edges) {
    std::vector<double> places;
    for (const auto& input : edges) {
        for (const LateEdge& edge : input) {
            places.push_back(edge.at);
        }
    }
    double least = std::numeric_limits<double>::infinity();
    for (const double at : places) {
        std::vector<double> jumps;
        for (const auto& input : edges) {
            std::vector<LateEdge> before = input;
            std::vector<LateEdge> after = input;
            std::erase_if(before, [at](const LateEdge& edge) { return edge.at > at; });
            std::erase_if(after, [at](const LateEdge& edge) { return edge.at <= at; });
            if (!before.empty() && !after.empty()) {
                jumps.push_back(UsualLate(after) - UsualLate(before));
            }
        }
        const double jump = MedianOf(std::move(jumps));
        least =
            std::min(least, ScatterOfEdges(Less(edges, [&](const LateEdge& edge) { return edge.at > at ? jump : 0; })));
    }
    return least;
}

// Of all inputs; those at one time, at several of them, are one witness.
std::vector<LateEdge> OneOfEachTime(const EdgesOfInputs& edges) {
    std::vector<LateEdge> sorted;
    for (const auto& input : edges) {
        sorted.insert(sorted.end(), input.begin(), input.end());
    }
    std::ranges::sort(sorted, {}, &LateEdge::at);
    std::vector<LateEdge> single;
    for (std::size_t first = 0; first < sorted.size();) {
        std::size_t end = first;
        while (end < sorted.size() && sorted[end].at - sorted[first].at < kOneMoment) {
            ++end;
        }
        single.push_back(sorted[first]);
        single.back().late = UsualLate(
            {sorted.begin() + static_cast<std::ptrdiff_t>(first), sorted.begin() + static_cast<std::ptrdiff_t>(end)});
        first = end;
    }
    return single;
}

// Empty where one jump explains the edges as well.
std::optional<EdgeTrend> TrendOf(const EdgesOfInputs& edges, double scatter) {
    EdgeTrend trend;
    std::vector<double> late;
    for (const auto& input : edges) {
        for (const LateEdge& edge : input) {
            trend.middle += edge.at;
            late.push_back(edge.late);
        }
    }
    const auto slope = SlopeOf(edges);
    if (late.size() < kFewestEdges || !slope || std::abs(*slope) < kLeastSlope) {
        return std::nullopt;
    }
    const double left = ScatterOfEdges(Less(edges, [&](const LateEdge& edge) { return *slope * edge.at; }));
    if (left > kMuchLess * std::min(scatter, ScatterBesideJump(edges))) {
        return std::nullopt;
    }
    trend.slope = *slope;
    trend.middle /= static_cast<double>(late.size());
    trend.late = MedianOf(std::move(late));
    return trend;
}

}  // namespace

double ScatterOfEdges(const EdgesOfInputs& edges) {
    std::vector<double> off;
    for (const auto& input : edges) {
        const double usual = UsualLate(input);
        for (const LateEdge& edge : input) {
            off.push_back(std::abs(edge.late - usual));
        }
    }
    return MedianOf(std::move(off));
}

std::optional<EdgeTrend> FindTrend(const EdgesOfInputs& edges, double scatter) {
    if (const auto trend = TrendOf(edges, scatter)) {
        return trend;
    }
    // Where an input has few edges, all of them together know more, unless channels are late against each other.
    const EdgesOfInputs together = {OneOfEachTime(edges)};
    return TrendOf(together, ScatterOfEdges(together));
}

}  // namespace lineup::sound
