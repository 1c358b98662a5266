#include "Host/Lineup/Check/Sound/Measure/Delays.h"

#include "Host/Lineup/Check/Sound/Measure/Edges.h"
#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kDelaysSounds = 1e-6;  // full scale
constexpr double kReach = 0.08;         // s on both sides of an edge
constexpr double kLeastReach = 0.01;
constexpr double kClearOfJump = 0.004;  // s
constexpr double kWorstFit = 0.35;      // of the weight: 1 - cos of what a phase is off
constexpr double kMisfitCounts = 4;     // phases come through codecs far better than edges
constexpr double kAwayCounts = 0.5;
constexpr double kClearlyBetter = 0.1;
constexpr double kFloatingWeight = 1e-3;
constexpr double kEdgesAgree = 0.00003;   // s
constexpr double kPairsDoubt = 0.00006;   // s, standard deviation: far less than half a period
constexpr double kSpreadOfPeriod = 0.06;  // periods: a beginning and an end so near know where they are
constexpr double kDeviation = 1.85;       // of a median, times the root of their number, over the median distance
constexpr std::size_t kFewPairs = 2;      // of which one number says little of how far they scatter
constexpr std::size_t kFewestLate = 2;    // one agrees with itself
constexpr double kLetThrough = 0.0001;  // s: by how much a tone begins early at least, where a limiter lets it through
constexpr double kOfShorter = 0.45;     // of the shorter of two slots
constexpr double kLeastOfTone = 0.02;   // of what was sent

// What is looked for at an input, and how late the slot was measured there.
struct InputChannel {
    std::size_t channel = 0;
    double delay = 0;  // s
};

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

bool IsShared(const RefTone& tone, std::size_t channel) {
    for (std::size_t other = 0; other < tone.gain.size(); ++other) {
        if (other != channel && tone.Amplitude(other) > kDelaysSounds) {
            return true;
        }
    }
    return false;
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
            if (tones[m].floating || sent <= kDelaysSounds || !cell.Seen() || cell.Amplitude() < kLeastOfTone * sent) {
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
    off.reserve(values.size());
    for (const double value : values) {
        off.push_back(std::abs(value - middle));
    }
    return MedianOf(std::move(off));
}

// A beginning and the end that follows: how late the two are together, and how far from that each of them is.
struct LateBurst {
    double late;    // s
    double spread;  // s
    bool isGap;     // an end, and the beginning that follows
};

std::vector<LateBurst> LateBursts(std::vector<LateEdge> edges) {
    std::erase_if(edges, [](const LateEdge& edge) { return edge.weight < 1; });
    std::ranges::sort(edges, [](const LateEdge& a, const LateEdge& b) {
        return a.frequency < b.frequency || (a.frequency == b.frequency && a.at < b.at);
    });
    std::vector<LateBurst> bursts;
    for (std::size_t i = 1; i < edges.size(); ++i) {
        if (edges[i - 1].rises != edges[i].rises && edges[i - 1].frequency == edges[i].frequency) {
            bursts.push_back({(edges[i - 1].late + edges[i].late) / 2, std::abs(edges[i - 1].late - edges[i].late) / 2,
                              edges[i].rises});
            ++i;
        }
    }
    return bursts;
}

// The median of edges that agree. Empty where they do not.
std::optional<double> AgreedOf(const std::vector<LateEdge>& edges) {
    std::vector<Vote> votes;
    std::vector<double> late;
    votes.reserve(edges.size());
    late.reserve(edges.size());
    for (const LateEdge& edge : edges) {
        votes.push_back({edge.late, edge.weight});
        late.push_back(edge.late);
    }
    const double usual = WeightedMedian(std::move(votes));
    return MedianDistance(late, usual) < kEdgesAgree ? std::optional(usual) : std::nullopt;
}

bool HaveOnePitch(const std::vector<LateEdge>& edges) {
    return std::ranges::all_of(edges, [&](const LateEdge& edge) { return edge.frequency == edges.front().frequency; });
}

// The same after a lossy codec. What it does to all beginnings alike, or to all ends, says nothing: those have to agree
// with each other.
std::optional<double> AgreedBothWays(const std::vector<LateEdge>& edges) {
    const std::optional<double> agreed = AgreedOf(edges);
    const auto isNear = [&](bool rises) {
        std::vector<double> off;
        for (const LateEdge& edge : edges) {
            if (edge.rises == rises && agreed) {
                off.push_back(std::abs(edge.late - *agreed));
            }
        }
        if (off.empty()) {
            return false;
        }
        // Of two, the nearer: a recording may begin within a tone.
        const auto middle = off.begin() + (std::ssize(off) - 1) / 2;
        std::ranges::nth_element(off, middle);
        return *middle < 2 * kEdgesAgree;
    };
    return isNear(true) && isNear(false) ? agreed : std::nullopt;
}

// The same of bursts: by beginnings and ends together. A codec that moves one of them and not the other moves both by
// half as much. A gap in a steady tone that is as long as it was is where it was, be it the only one: the nearer to
// that, the more it counts, so that one that is torn takes nothing from the others.
std::optional<AgreedDelay> AgreedOfBursts(std::vector<LateEdge> edges) {
    double highest = 0;
    for (const LateEdge& edge : edges) {
        highest = std::max(highest, edge.frequency);
    }
    bool areGaps = true;
    std::vector<double> late;
    std::vector<Vote> votes;
    std::vector<Vote> spreads;
    for (const LateBurst& burst : LateBursts(std::move(edges))) {
        const double weight = 1 / (burst.spread * burst.spread + kEdgesAgree * kEdgesAgree);
        areGaps = areGaps && burst.isGap;
        late.push_back(burst.late);
        votes.push_back({burst.late, weight});
        spreads.push_back({burst.spread, weight});
    }
    if (late.empty()) {
        return std::nullopt;
    }
    std::vector<double> plain;
    plain.reserve(spreads.size());
    for (const Vote& spread : spreads) {
        plain.push_back(spread.value);
    }
    const AgreedDelay agreed =
        areGaps ? AgreedDelay{WeightedMedian(std::move(votes)), true, WeightedMedian(std::move(spreads))}
                : AgreedDelay{MedianOf(late), true, MedianOf(std::move(plain))};
    const double scatter = kDeviation * MedianDistance(late, MedianOf(late)) * (late.size() <= kFewPairs ? 2 : 1);
    const bool agree = late.size() >= kFewPairs && scatter / std::sqrt(static_cast<double>(late.size())) < kPairsDoubt;
    const bool isAsLong = areGaps && agreed.doubt < std::max(kPairsDoubt, kSpreadOfPeriod / highest);
    return agree || isAsLong ? std::optional(agreed) : std::nullopt;
}

// The same of a few edges that noise does not move by much: all are near to each other.
std::optional<double> AgreedOfFew(std::vector<LateEdge> edges, std::size_t fewest) {
    std::ranges::sort(edges, {}, &LateEdge::late);
    const bool anySure = std::ranges::any_of(edges, [](const LateEdge& edge) { return edge.weight == 1; });
    const bool agree = anySure && edges.size() >= fewest && edges.back().late - edges.front().late < 2 * kEdgesAgree &&
                       std::ranges::all_of(edges, [](const LateEdge& edge) {
                           return edge.doubt < kEdgesAgree || edge.weight < 1;  // which says nothing by itself
                       });
    return agree ? AgreedOf(edges) : std::nullopt;
}

// Each tone begins early beside where it ends.
bool LetsBeginningsThrough(const std::vector<LateEdge>& edges) {
    std::size_t pairs = 0;
    for (const LateEdge& begins : edges) {
        for (const LateEdge& ends : edges) {
            if (begins.rises && !ends.rises && begins.frequency == ends.frequency) {
                ++pairs;
                if (begins.late > ends.late - kLetThrough) {
                    return false;
                }
            }
        }
    }
    return pairs > 1;
}

// The same behind a limiter: by ends of tones, of those that no other channel has where there are such.
std::optional<double> AgreedOfEnds(std::vector<LateEdge> edges) {
    if (!LetsBeginningsThrough(edges)) {
        return std::nullopt;
    }
    std::erase_if(edges, [](const LateEdge& edge) { return edge.rises; });
    std::vector<LateEdge> own = edges;
    std::erase_if(own, [](const LateEdge& edge) { return edge.shared || edge.weight < 1; });
    return own.empty() ? AgreedOfFew(std::move(edges), kFewestLate) : AgreedOfFew(std::move(own), 1);
}

// The same where another channel leaks.
std::optional<double> AgreedOfOwn(std::vector<LateEdge> edges, bool isTold) {
    std::erase_if(edges, [](const LateEdge& edge) { return edge.shared || edge.weight < 1; });
    return isTold || AgreedBothWays(edges) ? AgreedOfFew(std::move(edges), kFewestLate) : std::nullopt;
}

// A tone that begins or ends where a slot does, as the slot has it.
struct SlotEdge {
    const SlotSound* sound = nullptr;
    const RefTone* tone = nullptr;
    PhaseLine line;
    double noise = 0;    // mean square
    bool after = false;  // it ends
};

// How far to look on both sides of an edge: not as far as the next one, and not beyond a jump.
double ReachAt(double at, double shorter, const Placing& placing) {
    double reach = std::min(kReach, kOfShorter * shorter / placing.tempo);
    for (const TimeJump& jump : placing.jumps) {
        reach = std::min(reach, std::abs(at - jump.at) - kClearOfJump);
    }
    return reach;
}

double NoiseOf(const InputSlot& input) {
    double sum = 0;
    for (std::size_t block = 0; block < input.blocks.size(); ++block) {
        sum += input.there[block] ? input.blocks[block].residual : 0;
    }
    return sum / static_cast<double>(std::max<std::size_t>(input.CountThere(), 1));
}

std::optional<LateEdge> LateEdgeOf(const History& history, const Reference& reference, const Placing& placing,
                                   const SlotEdge& edge, std::size_t input, InputChannel where) {
    const auto [channel, delay] = where;
    const SlotNumber& number = edge.sound->number;
    const RefSlot& slot = reference.slots[number.slot];
    const RefSlot& beside = Beside(reference, number.slot, edge.after);
    const std::vector<bool>& there = edge.sound->inputs[input].there;
    const bool isCut = edge.after ? !there.back() : !there.front();
    if (isCut || Sounds(beside, edge.tone->frequency, channel)) {
        return std::nullopt;
    }
    const double at = edge.after ? edge.sound->end : edge.sound->start;
    const double reach = ReachAt(at + delay, std::min(slot.Length(), beside.Length()), placing);
    if (reach < kLeastReach) {
        return std::nullopt;
    }
    // As the tone is there: time may jump within the slot.
    const double frequency = edge.tone->frequency * placing.pitch;
    const double turns = std::remainder(frequency * (placing.StartAt(at) + delay), 1.0);
    const double clip = static_cast<double>(number.cycle) * reference.cycle + (edge.after ? slot.end : slot.start);
    const double phase = kTurn * std::remainder(edge.tone->frequency * clip, 1.0) + std::arg(edge.tone->gain[channel]);
    const std::complex<double> gain = edge.line.mean * std::polar(1.0, -kTurn * turns);
    const auto late = EdgeDelay(history, placing, {input, at + delay, !edge.after, frequency, gain, phase, reach});
    if (!late) {
        return std::nullopt;
    }
    // Of the samples on both sides, each weighs twice its noise against the tone. Retiming that keeps the pitch puts
    // edges elsewhere.
    const double doubt = placing.tempo != placing.pitch
                             ? std::numeric_limits<double>::infinity()
                             : 2 * std::sqrt(edge.noise * reach / history.grid.NarrowRate()) /
                                   std::max(edge.line.amplitude, kDelaysSounds);
    return LateEdge{.at = at,
                    .late = *late,
                    .weight = edge.tone->floating ? kFloatingWeight : 1,
                    .frequency = edge.tone->frequency,
                    .rises = !edge.after,
                    .shared = IsShared(*edge.tone, channel),
                    .doubt = doubt};
}

}  // namespace

std::optional<AgreedDelay> AgreeOnDelay(const std::vector<LateEdge>& edges, bool lossy) {
    if (edges.empty()) {
        return std::nullopt;
    }
    const bool isTold = !lossy || !HaveOnePitch(edges);  // one pitch alone is moved alike in each cycle
    std::optional<double> agreed = isTold ? AgreedOf(edges) : AgreedBothWays(edges);
    if (!agreed && lossy) {
        if (const auto bursts = AgreedOfBursts(edges)) {
            return bursts;
        }
    }
    if (!agreed && !lossy) {
        agreed = AgreedOfEnds(edges);
    }
    if (!agreed) {
        agreed = AgreedOfOwn(edges, isTold);
    }
    if (agreed) {
        return AgreedDelay{*agreed, true};
    }
    std::vector<Vote> votes;
    votes.reserve(edges.size());
    for (const LateEdge& edge : edges) {
        votes.push_back({edge.late, edge.weight});
    }
    return AgreedDelay{WeightedMedian(std::move(votes)), false};
}

std::vector<LateEdge> EdgeDelays(const History& history, const Reference& reference, const SlotSound& sound,
                                 const Placing& placing, double delay, std::size_t input, std::size_t channel) {
    std::vector<LateEdge> delays;
    const InputSlot& heard = sound.inputs[input];
    const RefSlot& slot = reference.slots[sound.number.slot];
    for (std::size_t m = 0; m < slot.tones.size(); ++m) {
        const RefTone& tone = slot.tones[m];
        const auto line = FitPhaseLine(heard.gains[m], heard.there, sound.step);
        if (tone.Amplitude(channel) <= kDelaysSounds || !line ||
            line->amplitude < kLeastOfTone * tone.Amplitude(channel)) {
            continue;
        }
        for (const bool after : {false, true}) {
            const SlotEdge edge{&sound, &tone, *line, NoiseOf(heard), after};
            if (const auto late = LateEdgeOf(history, reference, placing, edge, input, {channel, delay})) {
                delays.push_back(*late);
            }
        }
    }
    return delays;
}

DelayAndPolarity DelayOf(const Cells& cells, const Reference& reference, std::size_t input, std::size_t channel,
                         double pitch, double around, std::optional<double> doubt) {
    const std::vector<PhasePoint> points = PhasePoints(cells, reference, input, channel, pitch);
    if (points.empty()) {
        return {around, 0, false};
    }
    // Without an edge, a tone that is half a period late is taken for one that is upside down.
    const double lowest = std::ranges::min_element(points, {}, &PhasePoint::omega)->omega;
    const double edges = doubt.value_or(0);
    const double phases = doubt ? kEdgesKnow : kTurn / lowest / 4;
    const double within = edges + phases;
    const double upright = BestDelay(points, around, within, 1);
    const double inverted = BestDelay(points, around, within, -1);
    // The further from where edges have it, beyond what those are in doubt, the less likely.
    const auto cost = [&](double delay, int polarity) {
        const double away = std::max(0.0, std::abs(delay - around) - edges) / phases;
        return kMisfitCounts * Misfit(points, delay, polarity) + kAwayCounts * away * away;
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
