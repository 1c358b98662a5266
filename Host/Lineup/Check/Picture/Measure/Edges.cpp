#include "Host/Lineup/Check/Picture/Measure/Edges.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <span>

namespace lineup::picture {

namespace {

constexpr double kLeastStepOfEdge = 6;  // codes
constexpr double kAlong = 0.6;          // the middle of an edge that is looked at
constexpr double kRoom = 0.42;          // of the distance to the next edge

// A line through an edge, averaged along it, in pixels of its plane; the first value's middle lies at `first`.
struct Section {
    double first = 0;
    double step = 1;
    std::vector<double> values;
};

struct Axis {
    int count;  // values across
    int lines;  // along
    double step;
    double offset;
    double alongStep;
};

Axis AxisOf(const Plane& plane, bool upright) {
    return upright ? Axis{plane.width, plane.height, static_cast<double>(plane.stepX), plane.offsetX,
                          static_cast<double>(plane.stepY)}
                   : Axis{plane.height, plane.width, static_cast<double>(plane.stepY), plane.offsetY,
                          static_cast<double>(plane.stepX)};
}

std::optional<Section> Cut(const Plane& plane, bool upright, double at, double reach, double from, double to) {
    const Axis axis = AxisOf(plane, upright);
    // Positions count from the edge of the first pixel; values stand in the middle of theirs.
    const auto index = [&](double position) { return (position - 0.5 - axis.offset) / axis.step; };
    const int first = static_cast<int>(std::ceil(index(at - reach)));
    const int last = static_cast<int>(std::floor(index(at + reach)));
    const double middle = (from + to) / 2;
    const double half = (to - from) / 2 * kAlong;
    const int top = std::max(0, static_cast<int>(std::ceil((middle - half) / axis.alongStep)));
    const int bottom = std::min(axis.lines, static_cast<int>(std::floor((middle + half) / axis.alongStep)));
    if (first < 0 || last >= axis.count || last - first < 5 || bottom <= top) {
        return std::nullopt;
    }
    Section section{.first = first * axis.step + axis.offset + 0.5, .step = axis.step, .values = {}};
    section.values.assign(static_cast<std::size_t>(last - first) + 1, 0);
    const auto width = static_cast<std::size_t>(plane.width);
    const int firstLine = upright ? top : first;
    const int endLine = upright ? bottom : last + 1;
    const auto left = static_cast<std::size_t>(upright ? first : top);
    const auto right = static_cast<std::size_t>(upright ? last + 1 : bottom);
    for (int y = firstLine; y < endLine; ++y) {
        const auto line = plane.codes.subspan(static_cast<std::size_t>(y) * width + left, right - left);
        const auto plus = [&plane](double sum, std::uint16_t code) {
            return sum + static_cast<double>(plane.Value(code));
        };
        if (upright) {
            std::ranges::transform(section.values, line, section.values.begin(), plus);
        } else {
            section.values[static_cast<std::size_t>(y - first)] = std::accumulate(line.begin(), line.end(), 0.0, plus);
        }
    }
    std::ranges::for_each(section.values, [&](double& value) { value /= bottom - top; });
    return section;
}

// Where a step lies by its area: blur and ringing that are alike at both sides do not move it.
std::optional<MeasuredEdge> StepIn(const Section& section) {
    const auto& values = section.values;
    const std::size_t flat = std::max<std::size_t>(1, values.size() / 5);
    double before = 0;
    double after = 0;
    for (std::size_t i = 0; i < flat; ++i) {
        before += values[i] / static_cast<double>(flat);
        after += values[values.size() - 1 - i] / static_cast<double>(flat);
    }
    const double step = after - before;
    if (std::abs(step) < kLeastStepOfEdge) {
        return std::nullopt;
    }
    double area = 0;
    double steepest = 0;
    double beyond = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double share = (values[i] - before) / step;
        area += 1 - share;
        beyond = std::max({beyond, -share, share - 1});
        if (i > 0) {
            steepest = std::max(steepest, (values[i] - values[i - 1]) / step);
        }
    }
    MeasuredEdge edge;
    edge.at = section.first - section.step / 2 + area * section.step;
    edge.width = steepest > 0 ? section.step / steepest : 0;
    edge.contrast = std::abs(step);
    edge.beyond = beyond;
    return edge;
}

// The edge in the first plane that shows it; of R'G'B' in the one that shows it best. Colour may lie beside its luma,
// or be coarser: it counts where luma shows nothing.
std::optional<MeasuredEdge> MeasureEdge(const Raster& raster, const CardEdge& edge, const Place& place,
                                        const EdgeSearch& search) {
    const Box box = place.Of(edge.isUpright ? Box{edge.at, edge.from, edge.at, edge.to}
                                            : Box{edge.from, edge.at, edge.to, edge.at});
    const double at = edge.isUpright ? box.left : box.top;
    const double room = edge.room * (edge.isUpright ? place.width : place.height) * kRoom;
    const double from = edge.isUpright ? box.top : box.left;
    const double to = edge.isUpright ? box.bottom : box.right;
    std::optional<MeasuredEdge> best;
    for (std::size_t p = 0; p < raster.planes.size(); ++p) {
        if (search.plane >= 0 && p != static_cast<std::size_t>(search.plane)) {
            continue;
        }
        const double step = edge.isUpright ? raster.planes[p].stepX : raster.planes[p].stepY;
        const double window = std::min(room, std::max(search.reach, 3.5) * std::max(1.0, step * 0.75));
        const auto section = Cut(raster.planes[p], edge.isUpright, at, window, from, to);
        auto found = section ? StepIn(*section) : std::nullopt;
        if (!found || found->beyond > search.mostBeyond) {
            continue;
        }
        found->edge = &edge;
        found->plane = p;
        if (!best || (raster.isRgb && found->contrast > best->contrast)) {
            best = found;
        }
    }
    return best;
}

}  // namespace

std::vector<MeasuredEdge> MeasureEdges(const Raster& raster, const CardModel& model, const Place& place,
                                       const EdgeSearch& search) {
    std::vector<MeasuredEdge> measured;
    for (const CardEdge& edge : model.edges) {
        if (const auto found = MeasureEdge(raster, edge, place, search)) {
            measured.push_back(*found);
        }
    }
    return measured;
}

}  // namespace lineup::picture
