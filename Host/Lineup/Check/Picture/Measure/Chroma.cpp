#include "Host/Lineup/Check/Picture/Measure/Chroma.h"

#include <algorithm>
#include <vector>

namespace lineup::picture {

namespace {

constexpr double kStrong = 25;       // codes
constexpr std::size_t kFewest = 4;   // edges
constexpr double kChromaReach = 10;  // pixels
constexpr double kLumaReach = 6;

struct Weighed {
    double value;
    double weight;
};

// The value that half of the weight lies below.
std::optional<double> MedianOf(std::vector<Weighed> values) {
    if (values.size() < kFewest) {
        return std::nullopt;
    }
    std::ranges::sort(values, {}, &Weighed::value);
    double left = 0;
    for (const Weighed& one : values) {
        left += one.weight / 2;
    }
    auto middle = values.begin();
    while (left > middle->weight && middle + 1 != values.end()) {
        left -= middle->weight;
        ++middle;
    }
    return middle->value;
}

}  // namespace

ChromaShape MeasureChroma(const Raster& raster, const CardModel& model, const Place& place) {
    ChromaShape shape;
    if (raster.isRgb || raster.planes.size() < 3) {
        return shape;
    }
    std::vector<Weighed> right;
    std::vector<Weighed> down;
    std::vector<Weighed> across;
    std::vector<Weighed> along;
    for (const int plane : {1, 2}) {
        for (const MeasuredEdge& measured :
             MeasureEdges(raster, model, place, {.reach = kChromaReach, .plane = plane})) {
            if (measured.contrast < kStrong || measured.edge->isBorder) {
                continue;
            }
            const double due = measured.edge->isUpright ? place.X(measured.edge->at) : place.Y(measured.edge->at);
            (measured.edge->isUpright ? right : down).push_back({measured.at - due, 1});
            (measured.edge->isUpright ? across : along).push_back({measured.width, 1});
        }
    }
    return {MedianOf(right), MedianOf(down), MedianOf(across), MedianOf(along)};
}

std::optional<double> MeasureSoftness(const Raster& raster, const CardModel& model, const Place& place, bool upright) {
    std::vector<Weighed> widths;
    for (const MeasuredEdge& measured : MeasureEdges(raster, model, place, {.reach = kLumaReach, .plane = 0})) {
        if (measured.edge->isUpright == upright && !measured.edge->isBorder && measured.contrast >= kStrong / 2) {
            widths.push_back({measured.width, measured.contrast});  // a codec smears low steps most
        }
    }
    return MedianOf(widths);
}

}  // namespace lineup::picture
