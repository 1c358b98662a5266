#include "Host/Lineup/Check/Sound/Events/Jumps.h"

#include "Host/Lineup/Check/Sound/Events/Events.h"
#include "Host/Lineup/Check/Sound/Measure/Delays.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <set>

namespace lineup::sound {

namespace {

constexpr double kFarthestEdge = 0.16;    // s
constexpr double kJumpsSamePitch = 0.02;  // relative
constexpr double kJumpsSamePitchHz = 8;
constexpr double kCloseEdges = 3.5;  // s around a jump: the edges that are measured
constexpr std::size_t kEdgesOnSide = 4;
constexpr std::size_t kTimesOnSide = 3;
constexpr double kRoughlyKnown = 0.003;  // s: what followed tones may be off
constexpr double kWellKnown = 0.0003;    // s: what measured edges may be off
constexpr double kNotKnown = 0.05;       // s
constexpr double kPhaseKnown = 0.01;     // of a period
constexpr int kMostPeriods = 30;
constexpr double kOneTime = 0.03;          // s
constexpr double kEvenPiece = 0.002;       // s
constexpr double kFarPiece = 0.008;        // s
constexpr double kCutEdge = 0.008;         // s
constexpr double kFineCutEdge = 0.0005;    // s
constexpr double kClearStep = 0.012;       // s
constexpr double kFlatPiece = 0.004;       // s
constexpr double kShiftedNothing = 0.004;  // s: what followed tones do not tell from none

// The nearest edge that is due, as late as it is there.
std::optional<double> NearestDue(const Reference& reference, const Placing& placing, double frequency, double at,
                                 bool rises) {
    std::optional<double> nearest;
    const double clip = placing.ToClip(at);
    for (const RefBurst& burst : reference.bursts) {
        const double expected = burst.frequency * placing.pitch;
        const bool endless = burst.off - burst.on >= reference.cycle - 1e-6;
        if (endless || std::abs(frequency - expected) > std::max(kJumpsSamePitchHz, kJumpsSamePitch * expected)) {
            continue;
        }
        const double edge = rises ? burst.on : burst.off;
        const double cycle = std::round((clip - edge) / reference.cycle);
        const double late = (clip - edge - cycle * reference.cycle) / placing.tempo;
        if (std::abs(late) < kFarthestEdge && (!nearest || std::abs(late) < std::abs(*nearest))) {
            nearest = late;
        }
    }
    return nearest;
}

std::vector<EdgeVote> EdgesWhere(std::span<const EdgeVote> edges, const auto& takes) {
    std::vector<EdgeVote> taken;
    std::ranges::copy_if(edges, std::back_inserter(taken), takes);
    return taken;
}

// Edges at one time, at several inputs, are one witness.
double MedianLate(std::span<const EdgeVote> edges, double at, bool after) {
    std::vector<EdgeVote> side = EdgesWhere(edges, [=](const EdgeVote& edge) { return (edge.at > at) == after; });
    std::ranges::sort(side, {}, &EdgeVote::at);
    std::vector<double> late;
    for (std::size_t first = 0; first < side.size();) {
        std::vector<double> together;
        std::size_t next = first;
        for (; next < side.size() && side[next].at - side[first].at < kOneTime; ++next) {
            together.push_back(side[next].late);
        }
        late.push_back(MedianOf(std::move(together)));
        first = next;
    }
    return MedianOf(std::move(late));
}

bool HasSide(std::span<const EdgeVote> edges, double at, bool after) {
    return std::ranges::any_of(edges, [&](const EdgeVote& edge) { return (edge.at > at) == after; });
}

std::set<std::size_t> InputsOf(std::span<const EdgeVote> edges) {
    std::set<std::size_t> inputs;
    for (const EdgeVote& edge : edges) {
        inputs.insert(edge.input);
    }
    return inputs;
}

// What edges before and after say was lost; empty where one side has none.
std::optional<double> LostAcross(std::span<const EdgeVote> edges, double at) {
    return HasSide(edges, at, false) && HasSide(edges, at, true)
               ? std::optional(MedianLate(edges, at, false) - MedianLate(edges, at, true))
               : std::nullopt;
}

std::vector<EdgeVote> FineEdges(const History& history, const Reference& reference, const Placing& placing,
                                std::span<const SlotNumber> slots, double around, bool passTorn) {
    SlotMeter meter(history, reference);
    meter.Place(placing, std::vector<double>(history.Inputs()));
    std::vector<EdgeVote> edges;
    for (const SlotNumber& number : slots) {
        if (meter.EndOf(number) < around - kCloseEdges || meter.StartOf(number) > around + kCloseEdges) {
            continue;
        }
        SlotSound sound = meter.Measure(number);
        // Where no phase knows the jump, those of a slot that it lies in do not fit together.
        if (passTorn && placing.JumpsWithin(sound.start, sound.end)) {
            continue;
        }
        if (const auto extent = ExtentOfTone(sound)) {
            sound.Keep(extent->first, extent->second);
        }
        LeaveOutDamage(history, sound);  // an edge needs the tone's own amplitude
        for (std::size_t input = 0; input < history.Inputs(); ++input) {
            for (std::size_t channel = 0; channel < reference.channels.size(); ++channel) {
                for (const LateEdge& edge : EdgeDelays(history, reference, sound, placing, 0, input, channel)) {
                    edges.push_back({edge.at, edge.late, input, edge.rises});
                }
            }
        }
    }
    return edges;
}

// The jump that all phases allow, near to `lost`, which is known to `reach` s.
double AsPhasesHaveIt(const SoundEvent& event, double lost, double reach) {
    if (event.phases.empty()) {
        return lost;
    }
    const PhaseJump& shortest = *std::ranges::min_element(event.phases, {}, &PhaseJump::period);
    const double nearest = shortest.lost + std::round((lost - shortest.lost) / shortest.period) * shortest.period;
    double best = nearest;
    double least = std::numeric_limits<double>::infinity();
    for (int periods = -kMostPeriods; periods <= kMostPeriods; ++periods) {
        const double candidate = nearest + periods * shortest.period;
        double cost = std::pow((candidate - lost) / reach, 2);
        for (const PhaseJump& phase : event.phases) {
            cost += std::pow(std::remainder(candidate - phase.lost, phase.period) / phase.period / kPhaseKnown, 2) /
                    static_cast<double>(event.phases.size());
        }
        if (cost < least) {
            least = cost;
            best = candidate;
        }
    }
    return best;
}

// Every phase has turned by half a period: what is turned upside down looks like that too.
bool MayBeTurnedOver(const SoundEvent& event) {
    constexpr double kHalf = 0.5;
    return !event.phases.empty() && std::ranges::all_of(event.phases, [](const PhaseJump& phase) {
        return kHalf - std::abs(std::remainder(phase.lost / phase.period, 1.0)) < kPhaseKnown;
    });
}

// How many times apart there are.
std::size_t TimesOf(std::span<const EdgeVote> sorted) {
    std::size_t times = 0;
    double last = 0;
    for (const EdgeVote& edge : sorted) {
        if (times == 0 || edge.at > last + kOneTime) {
            ++times;
            last = edge.at;
        }
    }
    return times;
}

// What begins the first of the tones, or ends the last, may be where the line-up was cut.
void DropCutEnd(std::vector<EdgeVote>& edges, bool last, double most) {
    const double end = last ? edges.back().at : edges.front().at;
    const auto isOuter = [&](const EdgeVote& edge) { return std::abs(edge.at - end) < kOneTime; };
    const EdgeVote& beside =
        last ? *std::find_if_not(edges.rbegin(), edges.rend(), isOuter) : *std::ranges::find_if_not(edges, isOuter);
    const double late = beside.late;
    std::erase_if(edges, [&](const EdgeVote& edge) {
        return isOuter(edge) && edge.rises != last && std::abs(edge.late - late) > most;
    });
}

void DropCutEnds(std::vector<EdgeVote>& edges) {
    std::ranges::sort(edges, {}, &EdgeVote::at);
    for (const bool last : {false, true}) {
        if (TimesOf(edges) > 2) {
            DropCutEnd(edges, last, kCutEdge);
        }
    }
}

// The same of measured edges, where others know what lies on that side of `at`.
void DropCutEndsAround(std::vector<EdgeVote>& edges, double at) {
    std::ranges::sort(edges, {}, &EdgeVote::at);
    for (const bool last : {false, true}) {
        std::vector<EdgeVote> side;
        std::ranges::copy_if(edges, std::back_inserter(side),
                             [&](const EdgeVote& edge) { return (edge.at > at) == last; });
        if (TimesOf(side) > 1) {
            DropCutEnd(edges, last, kFineCutEdge);
        }
    }
}

// How much was lost at `at`, by the edges that are measured around it.
std::optional<double> LostBetweenFine(const History& history, const Reference& reference, const Placing& placing,
                                      std::span<const SlotNumber> slots, double at, bool passTorn) {
    std::vector<EdgeVote> edges = FineEdges(history, reference, placing, slots, at, passTorn);
    DropCutEndsAround(edges, at);
    return LostBetweenAlike(edges, at);
}

// The edges less what is lost at `at`, each against the median of its input: how far off they are, mean, in s.
double Scatter(std::vector<EdgeVote> edges, double at, double lost) {
    std::map<std::size_t, std::vector<double>> byInput;
    for (EdgeVote& edge : edges) {
        edge.late += edge.at > at ? lost : 0;
        byInput[edge.input].push_back(edge.late);
    }
    std::map<std::size_t, double> usual;
    for (auto& [input, late] : byInput) {
        usual[input] = MedianOf(std::move(late));
    }
    double scatter = 0;
    for (const EdgeVote& edge : edges) {
        scatter += std::abs(edge.late - usual[edge.input]) / static_cast<double>(edges.size());
    }
    return scatter;
}

}  // namespace

std::vector<EdgeVote> RoughEdges(std::span<const ToneRun> runs, const Reference& reference, const Placing& placing) {
    std::vector<EdgeVote> edges;
    for (const ToneRun& run : runs) {
        for (const bool rises : {true, false}) {
            const double at = rises ? run.on : run.off;
            if (rises ? run.openStart : run.openEnd) {
                continue;
            }
            if (const auto late = NearestDue(reference, placing, run.frequency, at, rises)) {
                edges.push_back({at, *late, run.input, rises});
            }
        }
    }
    DropCutEnds(edges);
    return edges;
}

bool LieOnOneLevel(std::span<const EdgeVote> edges) {
    return edges.size() >= kEdgesOnSide && Scatter({edges.begin(), edges.end()}, 0, 0) < kEvenPiece;
}

bool LieApart(std::span<const EdgeVote> edges) {
    return edges.size() >= kEdgesOnSide && Scatter({edges.begin(), edges.end()}, 0, 0) > kFarPiece;
}

std::optional<double> LostBetween(std::span<const EdgeVote> edges, double at) {
    std::vector<double> lost;
    for (const std::size_t input : InputsOf(edges)) {
        const auto own =
            LostAcross(EdgesWhere(edges, [input](const EdgeVote& edge) { return edge.input == input; }), at);
        lost.insert(lost.end(), own ? 1 : 0, own.value_or(0));
    }
    return lost.empty() ? LostAcross(edges, at) : MedianOf(std::move(lost));
}

std::optional<double> LostBetweenAlike(std::span<const EdgeVote> edges, double at) {
    std::vector<double> lost;
    for (const std::size_t input : InputsOf(edges)) {
        for (const bool rises : {true, false}) {
            const auto own = LostAcross(
                EdgesWhere(edges, [=](const EdgeVote& edge) { return edge.input == input && edge.rises == rises; }),
                at);
            lost.insert(lost.end(), own ? 1 : 0, own.value_or(0));
        }
    }
    return lost.empty() ? LostBetween(edges, at) : MedianOf(std::move(lost));
}

TimeJump ResolveJump(const History& history, const Reference& reference, const Placing& placing,
                     std::span<const EdgeVote> rough, std::span<const SlotNumber> slots, SoundEvent& event) {
    if (MayBeTurnedOver(event)) {
        const double period = std::ranges::min_element(event.phases, {}, &PhaseJump::period)->period;
        const auto moved = LostBetweenFine(history, reference, placing, slots, event.at, false);
        if (moved && std::abs(*moved) < period / 4) {
            return {event.at, 0};  // time goes on as before
        }
    }
    const auto coarse = LostBetween(rough, event.at);
    const bool hasMoved = coarse && std::abs(*coarse) > kShiftedNothing;
    const double first = AsPhasesHaveIt(event, hasMoved ? *coarse : 0, coarse ? kRoughlyKnown : kNotKnown);
    Placing tried = placing;
    tried.jumps.push_back({event.at, first});
    std::ranges::sort(tried.jumps, {}, &TimeJump::at);
    const bool passTorn = event.phases.empty();
    const auto more = LostBetweenFine(history, reference, tried, slots, event.at, passTorn);
    event.amount = more ? AsPhasesHaveIt(event, first + *more, kWellKnown) : first;
    event.sure = more.has_value();
    return {event.at, event.amount};
}

std::optional<TimeJump> FindStep(std::vector<EdgeVote> edges) {
    std::ranges::sort(edges, {}, &EdgeVote::at);
    std::optional<TimeJump> best;
    double least = std::min(kFlatPiece, Scatter(edges, 0, 0) / 2);
    for (std::size_t split = 1; split < edges.size(); ++split) {
        const std::span<const EdgeVote> all(edges);
        if (TimesOf(all.first(split)) < kTimesOnSide || TimesOf(all.subspan(split)) < kTimesOnSide) {
            continue;
        }
        const double at = (edges[split - 1].at + edges[split].at) / 2;
        const double lost = LostBetween(edges, at).value_or(0);
        const double scatter = std::abs(lost) > kClearStep ? Scatter(edges, at, lost) : least;
        if (scatter < least) {
            best = TimeJump{at, lost};
            least = scatter;
        }
    }
    return best;
}

}  // namespace lineup::sound
