#include "Host/Lineup/Check/Sound/Measure/Edges.h"

#include "Host/Lineup/Check/Sound/Find/SteadySamples.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <cmath>
#include <span>
#include <vector>

namespace lineup::sound {

namespace {

constexpr double kMostOfReach = 0.85;
constexpr double kOuterPart = 0.3;  // of what lies beside the edge: a channel may be late
constexpr double kSameShare = 0.1;  // relative
constexpr double kMostShare = 0.3;  // of the tone: what sounds as high is the tone itself

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

// What is left of the tone where it should be silent, in parts of it, as another channel leaves it that leaks. Noise is
// not the same in both halves of that stretch.
double LeftBeside(std::span<const float> samples, double firstPhase, double omega, double amplitude, bool before) {
    const auto period = kTurn / omega;
    const std::size_t half = samples.size() / 2;
    const auto periods = std::floor(kOuterPart * static_cast<double>(half) / period);
    const auto count = static_cast<std::size_t>(std::lround(periods * period));
    if (periods < 1 || 2 * count >= half) {
        return 0;
    }
    const auto share = [&](std::size_t begin) {
        const double phase = firstPhase + omega * static_cast<double>(begin);
        return TimeOfTone(samples.subspan(begin, count), phase, omega, amplitude) / static_cast<double>(count);
    };
    const double outer = share(before ? 0 : samples.size() - count);
    const double inner = share(before ? count : samples.size() - 2 * count);
    const bool agree = std::abs(outer - inner) < kSameShare * std::abs(outer + inner) / 2;
    return agree && std::abs(outer) < kMostShare ? (outer + inner) / 2 : 0;
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
    const double rest =
        LeftBeside(samples, phaseAt(static_cast<double>(first)), omega, std::abs(edge.gain), edge.rises);
    // The square of a sine runs through half a period beside its mean; where it begins and ends is known.
    const double outer = edge.rises ? static_cast<double>(end) - 0.5 : static_cast<double>(first) - 0.5;
    const double ripple = (std::sin(2 * phaseAt(outer)) - std::sin(2 * edge.phase)) / (2 * omega);
    const auto whole = static_cast<double>(samples.size());
    const double length = (sum + (edge.rises ? ripple : -ripple) - whole * rest) / (1 - rest);
    const double at = edge.rises ? outer - length : outer + length;
    const double delay = (at + 0.5) / rate - edge.at;
    return std::abs(delay) > kMostOfReach * edge.reach ? std::nullopt : std::optional(delay);
}

}  // namespace lineup::sound
