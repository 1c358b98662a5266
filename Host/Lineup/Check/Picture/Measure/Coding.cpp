#include "Host/Lineup/Check/Picture/Measure/Coding.h"

#include "Host/Lineup/Check/Picture/Measure/Edges.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numeric>
#include <span>
#include <vector>

namespace lineup::picture {

namespace {

constexpr double kRingingReach = 14;       // pixels beside an edge
constexpr double kMostRinging = 2;         // times the step
constexpr double kClearStep = 40;          // codes
constexpr std::size_t kFewestRinging = 4;  // edges
constexpr std::size_t kBlockGrid = 8;      // pixels
constexpr double kLeftOut = 3;             // pixels of a patch beside its edges, that are left out
constexpr double kRestless = 0.05;         // codes that luma changes from pixel to pixel in the mean: less is even

using Phases = std::array<double, kBlockGrid>;

struct Inside {
    int left;
    int top;
    int right;
    int bottom;
};

Inside InsideOf(const Plane& luma, const Box& box) {
    const auto from = [](double at) { return std::max(0, static_cast<int>(std::ceil(at + kLeftOut))); };
    const auto to = [](double at, int count) { return std::min(count, static_cast<int>(std::floor(at - kLeftOut))); };
    return {from(box.left), from(box.top), to(box.right, luma.width), to(box.bottom, luma.height)};
}

// What changes from each pixel to the next one across, or down, by where it lies on the grid; how many were looked at.
double AddChanges(const Plane& luma, const Inside& inside, bool across, Phases& changes) {
    const int stepX = across ? 1 : 0;
    const int stepY = across ? 0 : 1;
    const auto width = static_cast<std::size_t>(luma.width);
    const int first = inside.left + stepX;
    const auto left = static_cast<std::size_t>(first);
    const auto right = static_cast<std::size_t>(std::max(first, inside.right));
    for (int y = inside.top + stepY; y < inside.bottom; ++y) {
        const std::span line = std::span(luma.values).subspan(static_cast<std::size_t>(y) * width, width);
        const std::span before = std::span(luma.values).subspan(static_cast<std::size_t>(y - stepY) * width, width);
        Phases ofLine{};
        for (std::size_t x = left; x < right; ++x) {
            ofLine[x % kBlockGrid] += std::abs(static_cast<double>(line[x] - before[across ? x - 1 : x]));
        }
        if (across) {
            std::ranges::transform(changes, ofLine, changes.begin(), std::plus());
        } else {
            changes.at(static_cast<std::size_t>(y) % kBlockGrid) += std::accumulate(ofLine.begin(), ofLine.end(), 0.0);
        }
    }
    return std::max(0, inside.right - inside.left - stepX) *
           static_cast<double>(std::max(0, inside.bottom - inside.top - stepY));
}

double ShareOnGrid(const Phases& changes, double count) {
    const double all = std::accumulate(changes.begin(), changes.end(), 0.0);
    if (all < kRestless * count) {
        return 0;
    }
    constexpr double kAlike = 1.0 / kBlockGrid;
    return std::max(0.0, (*std::ranges::max_element(changes) / all - kAlike) / (1 - kAlike));
}

}  // namespace

std::optional<double> MeasureRinging(const Raster& raster, const CardModel& model, const Place& place) {
    std::array<std::vector<double>, 2> beyond;
    for (const MeasuredEdge& measured : MeasureEdges(raster, model, place, {kRingingReach, 0, kMostRinging})) {
        if (!measured.edge->isBorder && measured.contrast >= kClearStep) {
            beyond.at(measured.edge->isUpright ? 0 : 1).push_back(100 * measured.beyond);
        }
    }
    std::optional<double> most;
    for (std::vector<double>& some : beyond) {
        if (some.size() >= kFewestRinging) {
            const auto middle = some.begin() + static_cast<std::ptrdiff_t>(some.size() / 2);
            std::ranges::nth_element(some, middle);
            most = std::max(most.value_or(0), *middle);
        }
    }
    return most;
}

std::optional<double> MeasureBlocking(const Raster& raster, const CardModel& model, const Place& place) {
    const Plane& luma = raster.planes.front();
    double most = 0;
    double looked = 0;
    for (const bool across : {true, false}) {
        Phases changes{};
        double count = 0;
        for (const CardPatch& patch : model.patches) {
            count += AddChanges(luma, InsideOf(luma, place.Of(patch.box)), across, changes);
        }
        most = std::max(most, ShareOnGrid(changes, count));
        looked += count;
    }
    return looked > 0 ? std::optional(100 * most) : std::nullopt;
}

}  // namespace lineup::picture
