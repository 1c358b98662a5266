#include "Host/Lineup/Check/Sound/Measure/Edges.h"

#include "Host/Lineup/Check/Sound/Find/SteadySamples.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <cmath>
#include <span>
#include <vector>

namespace lineup::sound {

namespace {

constexpr double kMostOfReach = 0.85;

// The sum over samples of x * sine * 2 / amplitude, in samples.
double TimeOfTone(std::span<const float> samples, double firstPhase, double omega, double amplitude) {
    const std::complex<double> turn = std::polar(1.0, omega);
    std::complex<double> now = std::polar(1.0, firstPhase);
    double sum = 0;
    for (const float x : samples) {
        sum += static_cast<double>(x) * now.imag();
        now *= turn;
    }
    return 2 * sum / amplitude;
}

}  // namespace

std::optional<double> EdgeDelay(const History& history, const Placing& placing, const EdgeSought& edge) {
    const double rate = history.grid.NarrowRate();
    const std::int64_t first = std::llround((edge.at - edge.reach) * rate);
    const std::int64_t end = std::llround((edge.at + edge.reach) * rate);
    const SlidingBuffer<float>& narrow = history.narrow[edge.input];
    if (first < narrow.First() || end > narrow.End() || end <= first || std::abs(edge.gain) == 0) {
        return std::nullopt;
    }
    const double omega = kTurn * edge.frequency / rate;
    const double phase = std::arg(edge.gain);
    const auto phaseAt = [&](double sample) {
        return phase + kTurn * std::remainder(edge.frequency * (sample / rate), 1.0);
    };
    std::vector<float> buffer;
    const std::span<const float> samples = SteadySamples(history, placing, edge.input, first, end, buffer);
    const double sum = TimeOfTone(samples, phaseAt(static_cast<double>(first)), omega, std::abs(edge.gain));
    // The square of a sine runs through half a period beside its mean; where it begins and ends is known.
    const double outer = edge.rises ? static_cast<double>(end) - 0.5 : static_cast<double>(first) - 0.5;
    const double ripple = (std::sin(2 * phaseAt(outer)) - std::sin(2 * edge.phase)) / (2 * omega);
    const double length = sum + (edge.rises ? ripple : -ripple);
    const double at = edge.rises ? outer - length : outer + length;
    const double delay = (at + 0.5) / rate - edge.at;
    return std::abs(delay) > kMostOfReach * edge.reach ? std::nullopt : std::optional(delay);
}

}  // namespace lineup::sound
