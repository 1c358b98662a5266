#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace lineup::sound {

namespace {

struct Point {
    double time;
    double phase;
};

// Phases that follow each other by less than half a turn from where they were heading.
std::vector<Point> Unwrap(const std::vector<std::complex<double>>& gains, const std::vector<bool>& there, double step) {
    constexpr double kTurn = 2 * std::numbers::pi;
    std::vector<Point> points;
    for (std::size_t block = 0; block < gains.size(); ++block) {
        if (!there[block]) {
            continue;
        }
        double phase = std::arg(gains[block]);
        if (!points.empty()) {
            phase += kTurn * std::round((points.back().phase - phase) / kTurn);
        }
        points.push_back({static_cast<double>(block) * step, phase});
    }
    return points;
}

}  // namespace

std::optional<PhaseLine> FitPhaseLine(const std::vector<std::complex<double>>& gains, const std::vector<bool>& there,
                                      double step) {
    const std::vector<Point> points = Unwrap(gains, there, step);
    if (points.size() < 3) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(points.size());
    double time = 0;
    double phase = 0;
    for (const Point& point : points) {
        time += point.time / count;
        phase += point.phase / count;
    }
    double squares = 0;
    double products = 0;
    for (const Point& point : points) {
        squares += (point.time - time) * (point.time - time);
        products += (point.time - time) * (point.phase - phase);
    }
    PhaseLine line;
    line.slope = products / squares;
    line.blocks = points.size();
    line.seconds = count * step;
    double scatter = 0;
    for (const Point& point : points) {
        const double off = point.phase - phase - line.slope * (point.time - time);
        scatter += off * off / count;
    }
    line.scatter = std::sqrt(scatter);
    for (std::size_t block = 0; block < gains.size(); ++block) {
        line.amplitude += there[block] ? std::abs(gains[block]) / count : 0;
    }
    line.mean = std::polar(line.amplitude, phase);
    return line;
}

}  // namespace lineup::sound
