#include "Host/Lineup/Check/Sound/Measure/Delays.h"

#include "Host/Lineup/Check/Sound/Measure/Edges.h"
#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kDelaysSounds = 1e-6;  // full scale
constexpr double kReach = 0.08;         // s on both sides of an edge
constexpr double kLeastReach = 0.01;
constexpr double kClearOfJump = 0.004;  // s
constexpr double kWorstFit = 0.35;      // of the weight: 1 - cos of what a phase is off
constexpr double kClearlyBetter = 0.1;
constexpr double kFloatingWeight = 1e-3;
constexpr double kEdgesAgree = 0.00003;  // s
constexpr double kPairsDoubt = 0.00006;  // s, standard deviation: far less than half a period
constexpr double kDeviation = 1.85;      // of a median, times the root of their number, over the median distance
constexpr std::size_t kFewPairs = 2;     // of which one number says little of how far they scatter

// The slot before or after, and its cycle's number is of no matter.
const RefSlot& Beside(const Reference& reference, std::size_t slot, bool after) {
    const std::size_t count = reference.slots.size();
    return reference.slots[(slot + (after ? 1 : count - 1)) % count];
}

bool Sounds(const RefSlot& slot, double frequency, std::size_t channel) {
    return std::ranges::any_of(slot.tones, [&](const RefTone& tone) {
        return tone.frequency == frequency && tone.Amplitude(channel) > kDelaysSounds;
    });
}

// A cell as the search for a delay sees it.
struct PhasePoint {
    double omega;  // radians a second
    double phase;  // against what was sent
    double weight;
};

std::vector<PhasePoint> PhasePoints(const Cells& cells, const Reference& reference, std::size_t input,
                                    std::size_t channel, double pitch) {
    std::vector<PhasePoint> points;
    double total = 0;
    for (std::size_t slot = 0; slot < reference.slots.size(); ++slot) {
        const std::vector<RefTone>& tones = reference.slots[slot].tones;
        for (std::size_t m = 0; m < tones.size(); ++m) {
            const Cell& cell = cells.At(slot, m, input);
            const double sent = tones[m].Amplitude(channel);
            if (tones[m].floating || sent <= kDelaysSounds || !cell.Seen() || cell.Amplitude() < 0.02 * sent) {
                continue;
            }
            const double weight = cell.blocks * sent * cell.Amplitude();
            points.push_back({kTurn * tones[m].frequency * pitch, std::arg(cell.sum / tones[m].gain[channel]), weight});
            total += weight;
        }
    }
    for (PhasePoint& point : points) {
        point.weight /= total;
    }
    return points;
}

// 0 where all phases are those of a signal that is `delay` late, 2 where all are opposite.
double Misfit(const std::vector<PhasePoint>& points, double delay, int polarity) {
    double misfit = 0;
    for (const PhasePoint& point : points) {
        misfit += point.weight * (1 - polarity * std::cos(point.phase + point.omega * delay));
    }
    return misfit;
}

// The best delay within `reach` of `around`: the best of a grid, and from there by what the phases are off.
double BestDelay(const std::vector<PhasePoint>& points, double around, double reach, int polarity) {
    const double highest = std::ranges::max_element(points, {}, &PhasePoint::omega)->omega;
    const int steps = std::max(1, static_cast<int>(std::ceil(reach * highest)));
    double best = around;
    for (int step = -steps; step <= steps; ++step) {
        const double delay = around + reach * step / steps;
        if (Misfit(points, delay, polarity) < Misfit(points, best, polarity)) {
            best = delay;
        }
    }
    for (int round = 0; round < 20; ++round) {
        double slope = 0;
        double curve = 0;
        for (const PhasePoint& point : points) {
            const double off = std::remainder(point.phase + point.omega * best + (polarity < 0 ? kTurn / 2 : 0), kTurn);
            slope += point.weight * point.omega * off;
            curve += point.weight * point.omega * point.omega;
        }
        best -= slope / curve;
    }
    return best;
}

double MedianDistance(const std::vector<double>& values, double middle) {
    std::vector<double> off;
    for (const double value : values) {
        off.push_back(std::abs(value - middle));
    }
    return MedianOf(std::move(off));
}

// Beginnings and ends of each tone in pairs, as they follow each other: how late the two are together.
std::vector<double> LatePairs(std::vector<LateEdge> edges) {
    std::erase_if(edges, [](const LateEdge& edge) { return edge.weight < 1; });
    std::ranges::sort(edges, [](const LateEdge& a, const LateEdge& b) {
        return a.frequency < b.frequency || (a.frequency == b.frequency && a.at < b.at);
    });
    std::vector<double> late;
    for (std::size_t i = 1; i < edges.size(); ++i) {
        if (edges[i - 1].rises != edges[i].rises && edges[i - 1].frequency == edges[i].frequency) {
            late.push_back((edges[i - 1].late + edges[i].late) / 2);
            ++i;
        }
    }
    return late;
}

}  // namespace

std::optional<AgreedDelay> AgreeOnDelay(std::vector<LateEdge> edges, bool lossy) {
    if (edges.empty()) {
        return std::nullopt;
    }
    std::vector<Vote> votes;
    std::vector<double> late;
    for (const LateEdge& edge : edges) {
        votes.push_back({edge.late, edge.weight});
        late.push_back(edge.late);
    }
    const double usual = WeightedMedian(std::move(votes));
    if (MedianDistance(late, usual) < kEdgesAgree) {
        return AgreedDelay{usual, true};
    }
    const std::vector<double> pairs = lossy ? LatePairs(std::move(edges)) : std::vector<double>();
    const double middle = MedianOf(pairs);
    const auto count = static_cast<double>(pairs.size());
    const double scatter = kDeviation * MedianDistance(pairs, middle) * (pairs.size() <= kFewPairs ? 2 : 1);
    if (pairs.size() >= kFewPairs && scatter / std::sqrt(count) < kPairsDoubt) {
        return AgreedDelay{middle, true};
    }
    return AgreedDelay{usual, false};
}

std::vector<LateEdge> EdgeDelays(const History& history, const Reference& reference, const SlotSound& sound,
                                 const Placing& placing, double delay, std::size_t input, std::size_t channel) {
    std::vector<LateEdge> delays;
    const RefSlot& slot = reference.slots[sound.number.slot];
    for (std::size_t m = 0; m < slot.tones.size(); ++m) {
        const RefTone& tone = slot.tones[m];
        const auto line = FitPhaseLine(sound.inputs[input].gains[m], sound.inputs[input].there, sound.step);
        if (tone.Amplitude(channel) <= kDelaysSounds || !line || line->amplitude < 0.02 * tone.Amplitude(channel)) {
            continue;
        }
        const double frequency = tone.frequency * placing.pitch;
        for (const bool after : {false, true}) {
            const RefSlot& beside = Beside(reference, sound.number.slot, after);
            const std::vector<bool>& there = sound.inputs[input].there;
            const bool isCut = after ? !there.back() : !there.front();
            if (isCut || Sounds(beside, tone.frequency, channel)) {
                continue;
            }
            const double edge = after ? sound.end : sound.start;
            // As the tone is there: time may jump within the slot.
            const std::complex<double> gain =
                line->mean * std::polar(1.0, -kTurn * std::remainder(frequency * (placing.StartAt(edge) + delay), 1.0));
            const double clip =
                static_cast<double>(sound.number.cycle) * reference.cycle + (after ? slot.end : slot.start);
            double reach = std::min(kReach, 0.45 * std::min(slot.Length(), beside.Length()) / placing.tempo);
            for (const TimeJump& jump : placing.jumps) {
                reach = std::min(reach, std::abs(edge + delay - jump.at) - kClearOfJump);
            }
            if (reach < kLeastReach) {
                continue;
            }
            const auto late =
                EdgeDelay(history, placing,
                          {input, edge + delay, !after, frequency, gain,
                           kTurn * std::remainder(tone.frequency * clip, 1.0) + std::arg(tone.gain[channel]), reach});
            if (late) {
                delays.push_back({edge, *late, tone.floating ? kFloatingWeight : 1, tone.frequency, !after});
            }
        }
    }
    return delays;
}

DelayAndPolarity DelayOf(const Cells& cells, const Reference& reference, std::size_t input, std::size_t channel,
                         double pitch, double around, bool byEdges) {
    const std::vector<PhasePoint> points = PhasePoints(cells, reference, input, channel, pitch);
    if (points.empty()) {
        return {around, 0, false};
    }
    // Without an edge, a tone that is half a period late is taken for one that is upside down.
    const double lowest = std::ranges::min_element(points, {}, &PhasePoint::omega)->omega;
    const double within = byEdges ? kEdgesKnow : kTurn / lowest / 4;
    const double upright = BestDelay(points, around, within, 1);
    const double inverted = BestDelay(points, around, within, -1);
    // The further from where edges have it, the less likely.
    const auto cost = [&](double delay, int polarity) {
        const double away = (delay - around) / within;
        return Misfit(points, delay, polarity) + 0.5 * away * away;
    };
    const double uprightCost = cost(upright, 1);
    const double invertedCost = cost(inverted, -1);
    const bool isUpright = uprightCost <= invertedCost;
    const double best = isUpright ? upright : inverted;
    if (Misfit(points, best, isUpright ? 1 : -1) > kWorstFit || std::abs(best - around) > 2 * within) {
        return {around, 0, false};
    }
    const bool clear = std::abs(uprightCost - invertedCost) > kClearlyBetter;
    return {best, clear ? (isUpright ? 1 : -1) : 0, true};
}

}  // namespace lineup::sound
