#include "Host/Lineup/Check/Picture/Measure/Chroma.h"

#include <algorithm>
#include <vector>

namespace lineup::picture {

namespace {

constexpr double kStrong = 25;       // codes
constexpr std::size_t kFewest = 4;   // edges
constexpr double kChromaReach = 10;  // pixels
constexpr double kLumaReach = 6;

std::optional<double> MedianOf(std::vector<double> values) {
    if (values.size() < kFewest) {
        return std::nullopt;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

}  // namespace

ChromaShape MeasureChroma(const Raster& raster, const CardModel& model, const Place& place) {
    ChromaShape shape;
    if (raster.isRgb || raster.planes.size() < 3) {
        return shape;
    }
    std::vector<double> right;
    std::vector<double> down;
    std::vector<double> across;
    std::vector<double> along;
    for (const int plane : {1, 2}) {
        for (const MeasuredEdge& measured : MeasureEdges(raster, model, place, kChromaReach, plane)) {
            if (measured.contrast < kStrong || measured.edge->isBorder) {
                continue;
            }
            const double due = measured.edge->isUpright ? place.X(measured.edge->at) : place.Y(measured.edge->at);
            (measured.edge->isUpright ? right : down).push_back(measured.at - due);
            (measured.edge->isUpright ? across : along).push_back(measured.width);
        }
    }
    return {MedianOf(right), MedianOf(down), MedianOf(across), MedianOf(along)};
}

std::optional<double> MeasureSoftness(const Raster& raster, const CardModel& model, const Place& place, bool upright) {
    std::vector<double> widths;
    for (const MeasuredEdge& measured : MeasureEdges(raster, model, place, kLumaReach, 0)) {
        if (measured.edge->isUpright == upright && !measured.edge->isBorder && measured.contrast >= kStrong / 2) {
            widths.push_back(measured.width);
        }
    }
    return MedianOf(widths);
}

}  // namespace lineup::picture
