#include "Host/Lineup/Check/Sound/Measure/LevelTrack.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kNoMatter = 0.005;  // dB
constexpr double kMuchBetter = 0.5;  // of what is left unexplained
constexpr int kMostSteps = 400;      // places that are tried
constexpr std::size_t kFewestOnSide = 6;
constexpr double kShortestPiece = 0.9;  // s: on either side of a step

using Points = std::vector<LevelPoint>;

// The median of each input's points that `takes` takes.
template <class Takes>
std::vector<std::optional<double>> Medians(const Points& points, std::size_t inputs, const Takes& takes) {
    std::vector<std::vector<double>> values(inputs);
    for (const LevelPoint& point : points) {
        if (takes(point)) {
            values[point.input].push_back(point.db);
        }
    }
    std::vector<std::optional<double>> medians(inputs);
    for (std::size_t input = 0; input < inputs; ++input) {
        if (!values[input].empty()) {
            medians[input] = MedianOf(std::move(values[input]));
        }
    }
    return medians;
}

// What inputs that have both agree on.
std::optional<double> Difference(const std::vector<std::optional<double>>& before,
                                 const std::vector<std::optional<double>>& after) {
    std::vector<double> differences;
    for (std::size_t input = 0; input < before.size(); ++input) {
        if (before[input] && after[input]) {
            differences.push_back(*after[input] - *before[input]);
        }
    }
    return differences.empty() ? std::nullopt : std::optional(MedianOf(std::move(differences)));
}

struct Model {
    double change = 0;
    double cost = 0;  // dB, mean distance
    std::vector<std::optional<double>> levels;
};

// One level an input, and `change` more for the points that `moved` says.
template <class Moved>
std::optional<Model> Fit(const Points& points, std::size_t inputs, const Moved& moved) {
    const auto before = Medians(points, inputs, [&](const LevelPoint& point) { return !moved(point); });
    const auto after = Medians(points, inputs, moved);
    const auto change = Difference(before, after);
    if (!change) {
        return std::nullopt;
    }
    Points level = points;
    for (LevelPoint& point : level) {
        point.db -= moved(point) ? *change : 0;
    }
    Model model{*change, 0, Medians(level, inputs, [](const LevelPoint&) { return true; })};
    for (const LevelPoint& point : level) {
        model.cost += std::abs(point.db - *model.levels[point.input]) / static_cast<double>(points.size());
    }
    return model;
}

// The mean distance of the points from the median of their input, dB.
double Scatter(const Points& points, std::size_t inputs) {
    const auto medians = Medians(points, inputs, [](const LevelPoint&) { return true; });
    double scatter = 0;
    for (const LevelPoint& point : points) {
        scatter += std::abs(point.db - *medians[point.input]) / static_cast<double>(points.size());
    }
    return scatter;
}

struct BothModel {
    double step = 0;   // dB: of the full parts, or where those have none, of the softer ones
    double parts = 0;  // dB: by how much the softer ones are louder, on one side of the step
    double cost = 0;
};

// Gain that follows the sound, and a step before it: that is another one for loud parts than for soft ones.
std::optional<BothModel> FitBoth(const Points& full, const Points& soft, std::size_t inputs, double at) {
    const auto isAfter = [at](const LevelPoint& point) { return point.at > at; };
    const auto isBefore = [at](const LevelPoint& point) { return point.at <= at; };
    const auto fullStep = Fit(full, inputs, isAfter);
    const auto softStep = Fit(soft, inputs, isAfter);
    const auto before = Difference(Medians(full, inputs, isBefore), Medians(soft, inputs, isBefore));
    const auto after = Difference(Medians(full, inputs, isAfter), Medians(soft, inputs, isAfter));
    if ((!fullStep && !softStep) || (!before && !after)) {
        return std::nullopt;
    }
    const double ofFull = static_cast<double>(full.size()) / static_cast<double>(full.size() + soft.size());
    const double cost = ofFull * (fullStep ? fullStep->cost : Scatter(full, inputs)) +
                        (1 - ofFull) * (softStep ? softStep->cost : Scatter(soft, inputs));
    return BothModel{(fullStep ? fullStep : softStep)->change, before ? *before : *after, cost};
}

}  // namespace

LevelChange ExplainLevels(const std::vector<LevelPoint>& points, std::size_t inputs, double least, double bent) {
    Points sorted = points;
    std::ranges::stable_sort(sorted, {}, &LevelPoint::at);
    LevelChange found;
    found.levels = Medians(sorted, inputs, [](const LevelPoint& point) { return point.full; });
    if (sorted.size() < 2 * kFewestOnSide) {
        return found;
    }
    const double plain = Scatter(sorted, inputs);
    double best = kMuchBetter * plain;
    const auto parts = Fit(sorted, inputs, [](const LevelPoint& point) { return !point.full; });
    if (parts && std::abs(parts->change) > least && parts->cost < best) {
        best = parts->cost;
        found.kind = LevelChange::Kind::Parts;
        found.db = parts->change;
        found.levels = parts->levels;
    }
    Points full;
    Points soft;
    std::ranges::partition_copy(sorted, std::back_inserter(full), std::back_inserter(soft), &LevelPoint::full);
    LevelChange both;
    double leastOfBoth = std::numeric_limits<double>::infinity();
    const std::size_t stride = sorted.size() / kMostSteps + 1;
    for (std::size_t split = kFewestOnSide; split + kFewestOnSide < sorted.size(); split += stride) {
        const double at = (sorted[split - 1].at + sorted[split].at) / 2;
        if (at - sorted.front().at < kShortestPiece || sorted.back().at - at < kShortestPiece) {
            continue;
        }
        const auto step = Fit(sorted, inputs, [at](const LevelPoint& point) { return point.at > at; });
        if (step && std::abs(step->change) > least && step->cost + kNoMatter < best) {
            best = step->cost;
            found = {LevelChange::Kind::Step, step->change, at, std::nullopt, step->levels};
        }
        const auto stepped = FitBoth(full, soft, inputs, at);
        if (stepped && std::abs(stepped->step) > least && std::abs(stepped->parts) > std::max(least, bent) &&
            stepped->cost < leastOfBoth) {
            leastOfBoth = stepped->cost;
            both = {LevelChange::Kind::Parts, stepped->parts, at, stepped->step, found.levels};
        }
    }
    if (leastOfBoth + kNoMatter < (found.kind == LevelChange::Kind::None ? 1 : kMuchBetter) * best) {
        found = std::move(both);
    }
    if (found.kind == LevelChange::Kind::None && plain > least) {
        found.kind = LevelChange::Kind::Riding;
        found.db = 2 * plain;
    }
    return found;
}

}  // namespace lineup::sound
