#include "Host/Lineup/Check/Picture/Measure/Geometry.h"

#include "Host/Lineup/Check/Picture/Measure/Edges.h"
#include "Host/Lineup/Check/Picture/Median.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace lineup::picture {

namespace {

constexpr double kOutlier = 1.2;         // pixels
constexpr std::size_t kFewestEdges = 3;  // along an axis
constexpr double kSimpler = 0.2;         // pixels of error that a place without unknowns may have more
constexpr double kClear = 40;            // codes: what a codec leaves behind hardly moves a step of that height
constexpr double kUnscaledReach = 4;     // pixels
constexpr double kLeastError = 0.01;     // pixels of an edge: no place is known better
constexpr double kWholePixels = 0.4;     // standard deviation of what rounding to one or two of them leaves

// Other generators round an edge to another line: a line through few edges then misses all of them, and errs by several
// pixels where it ends.
constexpr double kRounding = 1.05;  // pixels
constexpr double kMissed = 0.1;     // pixels r.m.s.

// A place on the card, as a fraction, and where it was found.
struct Mark {
    double sent;
    double found;
    double weight;
};

struct Line {
    double start = 0;
    double length = 1;
    double error = 0;
    int count = 0;
    double doubt = 0;  // of the length, standard deviation in pixels
};

double Error(const std::vector<Mark>& marks, double start, double length) {
    double sum = 0;
    double weights = 0;
    for (const Mark& mark : marks) {
        const double off = mark.found - start - mark.sent * length;
        sum += mark.weight * off * off;
        weights += mark.weight;
    }
    return weights > 0 ? std::sqrt(sum / weights) : 0;
}

double MostOff(const std::vector<Mark>& marks, double length) {
    double most = 0;
    for (const Mark& mark : marks) {
        most = std::max(most, std::abs(mark.found - mark.sent * length));
    }
    return most;
}

std::optional<Line> Fit(const std::vector<Mark>& marks) {
    double w = 0;
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    for (const Mark& mark : marks) {
        w += mark.weight;
        x += mark.weight * mark.sent;
        y += mark.weight * mark.found;
        xx += mark.weight * mark.sent * mark.sent;
        xy += mark.weight * mark.sent * mark.found;
    }
    const double spread = w * xx - x * x;
    if (spread <= 1e-9 * w * w) {
        return std::nullopt;
    }
    const double length = (w * xy - x * y) / spread;
    const double start = (y - length * x) / w;
    const double error = Error(marks, start, length);
    const double doubt =
        std::max(error, kLeastError) / std::sqrt(static_cast<double>(marks.size())) * w / std::sqrt(spread);
    return Line{start, length, error, static_cast<int>(marks.size()), doubt};
}

// By `fit`, without those that lie elsewhere than most do.
template <typename Fitted>
std::optional<Line> FitMost(std::vector<Mark>& marks, const Fitted& fit) {
    std::optional<Line> line = fit(marks);
    for (int pass = 0; pass < 4 && line; ++pass) {
        std::vector<double> off;
        off.reserve(marks.size());
        for (const Mark& mark : marks) {
            off.push_back(std::abs(mark.found - line->start - mark.sent * line->length));
        }
        std::vector<double> sorted = off;
        const double most = std::max(kOutlier, 4 * UpperMedian(sorted));
        std::vector<Mark> kept;
        for (std::size_t i = 0; i < marks.size(); ++i) {
            if (off[i] <= most) {
                kept.push_back(marks[i]);
            }
        }
        if (kept.size() == marks.size() || kept.size() < kFewestEdges) {
            break;
        }
        marks = std::move(kept);
        line = fit(marks);
    }
    return line;
}

std::vector<Mark> MarksOf(const std::vector<MeasuredEdge>& edges, bool upright, bool turned) {
    std::vector<Mark> marks;
    for (const MeasuredEdge& measured : edges) {
        if (measured.edge->isUpright == upright) {
            const double at = measured.edge->at;
            const double clear = measured.contrast * measured.contrast;
            const double weight = (measured.edge->to - measured.edge->from) * clear / (clear + kClear * kClear);
            marks.push_back({turned ? 1 - at : at, measured.at, weight});
        }
    }
    return marks;
}

// A line as long as this one.
Line FitStart(const std::vector<Mark>& marks, double length) {
    double start = 0;
    double weights = 0;
    for (const Mark& mark : marks) {
        start += mark.weight * (mark.found - mark.sent * length);
        weights += mark.weight;
    }
    start /= weights;
    return {start, length, Error(marks, start, length), static_cast<int>(marks.size())};
}

// Of two explanations that are as good, the one that says less: the card fills the frame, or is as high as it is wide,
// but for a height that was rounded to pixels.
Line Simplest(const Line& free, const std::vector<Mark>& marks, double side, std::optional<double> length) {
    const double whole = Error(marks, 0, side);
    const bool isRounded = free.error > kMissed && MostOff(marks, side) < kRounding;
    if (whole <= free.error + kSimpler || isRounded) {
        return {0, side, whole, free.count};
    }
    if (length) {
        if (FitStart(marks, *length).error <= free.error + kSimpler) {
            const double trust = free.doubt * free.doubt / (free.doubt * free.doubt + kWholePixels * kWholePixels);
            return FitStart(marks, free.length + trust * (*length - free.length));
        }
    }
    return free;
}

bool IsExact(const Geometry& geometry) {
    return geometry.edgesAcross >= 6 && geometry.edgesDown >= 4 && geometry.error < 1.5;
}

}  // namespace

Geometry RefinePlace(const Raster& raster, const CardModel& model, const Place& rough, double reach) {
    Geometry geometry{.place = rough};
    for (const double within : {reach, std::max(4.0, reach / 2), 4.0, 4.0}) {
        const auto edges = MeasureEdges(raster, model, geometry.place, {.reach = within});
        std::vector<Mark> across = MarksOf(edges, true, geometry.place.mirrored);
        std::vector<Mark> down = MarksOf(edges, false, geometry.place.flipped);
        const auto x = FitMost(across, Fit);
        const auto y = FitMost(down, Fit);
        if (!x || !y) {
            return geometry;
        }
        const Line wide = Simplest(*x, across, raster.width, std::nullopt);
        // A card that was made bigger or smaller as a whole keeps its shape.
        const double square = wide.length * model.height / model.width;
        const Line high = Simplest(*y, down, raster.height, square);
        geometry.place.x = wide.start;
        geometry.place.width = wide.length;
        geometry.place.y = high.start;
        geometry.place.height = high.length;
        geometry.edgesAcross = wide.count;
        geometry.edgesDown = high.count;
        geometry.error = std::max(wide.error, high.error);
    }
    geometry.isExact = IsExact(geometry);
    return geometry;
}

Geometry PlaceUnscaled(const Raster& raster, const CardModel& model, const Place& rough) {
    Geometry geometry{.place = rough};
    for (int pass = 0; pass < 2; ++pass) {
        const auto edges = MeasureEdges(raster, model, geometry.place, {.reach = kUnscaledReach});
        const auto along = [&](bool upright, bool turned, int side) {
            std::vector<Mark> marks = MarksOf(edges, upright, turned);
            const auto fit = [side](const std::vector<Mark>& some) { return std::optional(FitStart(some, side)); };
            return marks.empty() ? std::nullopt : FitMost(marks, fit);
        };
        const auto x = along(true, rough.mirrored, model.width);
        const auto y = along(false, rough.flipped, model.height);
        if (!x || !y) {
            return geometry;
        }
        geometry.place.x = x->start;
        geometry.place.width = x->length;
        geometry.place.y = y->start;
        geometry.place.height = y->length;
        geometry.edgesAcross = x->count;
        geometry.edgesDown = y->count;
        geometry.error = std::max(x->error, y->error);
    }
    geometry.isExact = IsExact(geometry);
    return geometry;
}

}  // namespace lineup::picture
