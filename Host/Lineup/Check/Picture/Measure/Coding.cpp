#include "Host/Lineup/Check/Picture/Measure/Coding.h"

#include "Host/Lineup/Check/Picture/Measure/Edges.h"
#include "Host/Lineup/Check/Picture/Measure/PlaneSums.h"
#include "Host/Lineup/Check/Picture/Median.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace lineup::picture {

namespace {

constexpr double kRingingReach = 14;       // pixels beside an edge
constexpr double kMostRinging = 2;         // times the step
constexpr double kClearStep = 40;          // codes
constexpr std::size_t kFewestRinging = 4;  // edges
constexpr double kLeftOut = 3;             // pixels of a patch beside its edges, that are left out
constexpr double kRestless = 0.05;         // codes that luma changes from pixel to pixel in the mean: less is even

Area InsideOf(const Plane& luma, const Box& box) {
    const auto from = [](double at) { return std::max(0, static_cast<int>(std::ceil(at + kLeftOut))); };
    const auto to = [](double at, int count) { return std::min(count, static_cast<int>(std::floor(at - kLeftOut))); };
    return {from(box.left), from(box.top), to(box.right, luma.width), to(box.bottom, luma.height)};
}

// From each pixel to the next one across, or down.
double NumberOfChanges(const Area& inside, bool across) {
    return std::max(0, inside.right - inside.left - (across ? 1 : 0)) *
           static_cast<double>(std::max(0, inside.bottom - inside.top - (across ? 0 : 1)));
}

double ShareOnGrid(const GridChanges& changes, double count) {
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
            most = std::max(most.value_or(0), UpperMedian(some));
        }
    }
    return most;
}

std::optional<double> MeasureBlocking(const Raster& raster, const CardModel& model, const Place& place) {
    const Plane& luma = raster.planes.front();
    double most = 0;
    double looked = 0;
    for (const bool across : {true, false}) {
        GridChanges changes{};
        double count = 0;
        for (const CardPatch& patch : model.patches) {
            const Area inside = InsideOf(luma, place.Of(patch.box));
            AddChanges(luma, inside, across, changes);
            count += NumberOfChanges(inside, across);
        }
        most = std::max(most, ShareOnGrid(changes, count));
        looked += count;
    }
    return looked > 0 ? std::optional(100 * most) : std::nullopt;
}

}  // namespace lineup::picture
