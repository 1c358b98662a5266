#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <utility>

namespace lineup::sound {

namespace {

struct PhaseAt {
    double time;
    double phase;
};

// Phases that follow each other by less than half a turn from where they were heading.
std::vector<PhaseAt> Unwrap(const std::vector<std::complex<double>>& gains, const std::vector<bool>& there,
                            double step) {
    constexpr double kTurn = 2 * std::numbers::pi;
    std::vector<PhaseAt> points;
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

// A stretch of phases that goes on without a break, and its mean.
struct Piece {
    std::span<const PhaseAt> points;
    double time = 0;
    double phase = 0;
};

// Where time jumps, the phase does once, and goes on as steeply as before.
std::vector<Piece> Pieces(const std::vector<PhaseAt>& points) {
    constexpr double kBreak = 0.03;  // radians
    constexpr double kBeyondOthers = 8;
    std::vector<double> turns;
    turns.reserve(points.size());
    for (std::size_t i = 1; i < points.size(); ++i) {
        turns.push_back((points[i].phase - points[i - 1].phase) / (points[i].time - points[i - 1].time));
    }
    const double usual = MedianOf(turns);
    std::vector<double> off;
    off.reserve(turns.size());
    for (const double turn : turns) {
        off.push_back(std::abs(turn - usual));
    }
    const double most = kBeyondOthers * MedianOf(std::move(off));
    std::vector<Piece> pieces;
    std::size_t first = 0;
    for (std::size_t i = 1; i <= points.size(); ++i) {
        const bool ends = i == points.size();
        const double away = ends ? 0 : std::abs(turns[i - 1] - usual);
        if (ends || (away > most && away * (points[i].time - points[i - 1].time) > kBreak)) {
            Piece piece{std::span(points).subspan(first, i - first)};
            const auto count = static_cast<double>(piece.points.size());
            for (const PhaseAt& point : piece.points) {
                piece.time += point.time / count;
                piece.phase += point.phase / count;
            }
            pieces.push_back(piece);
            first = i;
        }
    }
    return pieces;
}

}  // namespace

std::optional<PhaseLine> FitPhaseLine(const std::vector<std::complex<double>>& gains, const std::vector<bool>& there,
                                      double step) {
    const std::vector<PhaseAt> points = Unwrap(gains, there, step);
    if (points.size() < 3) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(points.size());
    double time = 0;
    double phase = 0;
    for (const PhaseAt& point : points) {
        time += point.time / count;
        phase += point.phase / count;
    }
    const std::vector<Piece> pieces = Pieces(points);
    double squares = 0;
    double products = 0;
    double allSquares = 0;
    for (const Piece& piece : pieces) {
        for (const PhaseAt& point : piece.points) {
            squares += (point.time - piece.time) * (point.time - piece.time);
            products += (point.time - piece.time) * (point.phase - piece.phase);
            allSquares += (point.time - time) * (point.time - time);
        }
    }
    if (squares <= 0) {
        return std::nullopt;
    }
    PhaseLine line;
    line.slope = products / squares;
    line.blocks = points.size();
    line.seconds = count * step * std::cbrt(squares / allSquares);
    double scatter = 0;
    for (const Piece& piece : pieces) {
        for (const PhaseAt& point : piece.points) {
            const double off = point.phase - piece.phase - line.slope * (point.time - piece.time);
            scatter += off * off / count;
        }
    }
    line.scatter = std::sqrt(scatter);
    for (std::size_t block = 0; block < gains.size(); ++block) {
        line.amplitude += there[block] ? std::abs(gains[block]) / count : 0;
    }
    line.mean = std::polar(line.amplitude, phase);
    return line;
}

}  // namespace lineup::sound
