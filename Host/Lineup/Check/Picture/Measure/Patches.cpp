#include "Host/Lineup/Check/Picture/Measure/Patches.h"

#include "Host/Lineup/Check/Picture/Measure/PlaneSums.h"
#include "Host/Lineup/Check/Picture/Median.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace lineup::picture {

namespace {

constexpr int kCells = 7;        // along each side
constexpr double kMargin = 0.2;  // of a side, that is left out
constexpr double kEdge = 2.5;    // values of a plane, that are left out at least

std::optional<Area> AreaIn(const Plane& plane, const Box& box) {
    const auto range = [](double first, double end, double step, double offset, int count) {
        const double margin = std::max((end - first) * kMargin, kEdge * step);
        const int from = static_cast<int>(std::ceil((first + margin - offset) / step));
        const int to = static_cast<int>(std::floor((end - margin - offset) / step));
        return std::pair(std::max(from, 0), std::min(to, count));
    };
    const auto [left, right] = range(box.left, box.right, plane.stepX, plane.offsetX, plane.width);
    const auto [top, bottom] = range(box.top, box.bottom, plane.stepY, plane.offsetY, plane.height);
    if (right - left < 1 || bottom - top < 1) {
        return std::nullopt;
    }
    return Area{left, top, right, bottom};
}

struct CellsOf {
    double mean;    // the median of the cells' means
    double noise;   // that of their deviations
    double uneven;  // r.m.s. of the means around their median
};

CellsOf MeasureCells(const Plane& plane, const Area& area) {
    std::vector<double> means;
    std::vector<double> noises;
    for (int row = 0; row < kCells; ++row) {
        for (int column = 0; column < kCells; ++column) {
            const int left = area.left + (area.right - area.left) * column / kCells;
            const int right = area.left + (area.right - area.left) * (column + 1) / kCells;
            const int top = area.top + (area.bottom - area.top) * row / kCells;
            const int bottom = area.top + (area.bottom - area.top) * (row + 1) / kCells;
            const double count = static_cast<double>(right - left) * (bottom - top);
            if (count > 0) {
                const auto [sum, squares] = SumsIn(plane, {left, top, right, bottom});
                means.push_back(sum / count);
                noises.push_back(std::sqrt(std::max(0.0, squares / count - sum / count * sum / count)));
            }
        }
    }
    CellsOf cells{.mean = UpperMedian(means), .noise = UpperMedian(noises), .uneven = 0};
    double squares = 0;
    for (const double mean : means) {
        squares += (mean - cells.mean) * (mean - cells.mean);
    }
    cells.uneven = std::sqrt(squares / static_cast<double>(means.size()));
    return cells;
}

}  // namespace

std::vector<MeasuredPatch> MeasurePatches(const Raster& raster, const CardModel& model, const Place& place) {
    std::vector<MeasuredPatch> measured;
    for (const CardPatch& patch : model.patches) {
        const Box box = place.Of(patch.box);
        MeasuredPatch result{.patch = &patch, .codes = {0, 128, 128}};
        bool isThere = true;
        for (std::size_t p = 0; p < raster.planes.size() && isThere; ++p) {
            const auto area = AreaIn(raster.planes[p], box);
            isThere = area.has_value();
            if (isThere) {
                const CellsOf cells = MeasureCells(raster.planes[p], *area);
                result.codes.at(p) = cells.mean;
                result.noise = p == 0 ? cells.noise : result.noise;
                result.uneven = std::max(result.uneven, cells.uneven);
            }
        }
        if (isThere) {
            measured.push_back(result);
        }
    }
    return measured;
}

}  // namespace lineup::picture
