#include "Host/Lineup/Check/Sound/Find/Find.h"

#include "Host/Lineup/Check/Sound/Find/Intervals.h"
#include "Host/Lineup/Check/Sound/Find/Speeds.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

namespace lineup::sound {

namespace {

constexpr double kFindSamePitch = 0.007;  // relative
constexpr double kLowToneReach = 0.09;
constexpr double kSameLength = 0.03;   // s
constexpr double kSamePlace = 0.04;    // s
constexpr double kTornPlace = 0.1;     // s: where time jumps, what follows lies beside its place
constexpr double kCorrected = 0.0015;  // a tempo this far from the pitch is another, relative
constexpr int kFewest = 3;             // stretches that name a sequence of several pitches or channels
constexpr int kFewestAtAnySpeed = 6;   // the same at a speed that nothing explains: of many, one fits other sound
constexpr std::size_t kMostPitches = 6;
constexpr std::size_t kMostTempos = 4;
constexpr std::array kCorrectedSpeeds = {25.0 / 24, 24.0 / 25};  // at which the pitch is kept on purpose
constexpr double kOfMissed = 0.3;                                // what is not where it is due, beside what is
constexpr double kOfTorn = 0.5;                                  // what is there but for a jump of time

// A stretch that was found beside one of the sequence that it may be.
struct Pair {
    const Interval* found;
    const Interval* sent;
};

bool PitchFits(double found, double sent, double pitch) {
    const double reach = sent < kLowTone ? kLowToneReach : kFindSamePitch;
    return std::abs(found / (sent * pitch) - 1) < reach;
}

std::vector<double> PitchesOf(std::span<const ToneRun> runs, const Reference& reference) {
    std::vector<Vote> votes;
    for (const ToneRun& run : runs) {
        for (const double frequency : reference.Frequencies()) {
            const double ratio = run.frequency / frequency;
            if (frequency >= kLowTone && ratio > kSlowest && ratio < kFastest) {
                votes.push_back({ratio, std::min(run.Length(), 1.0)});
            }
        }
    }
    return Clusters(std::move(votes), 0.002, kMostPitches);
}

std::vector<Pair> PairsOf(std::span<const Interval> found, std::span<const Interval> sent, double pitch) {
    std::vector<Pair> pairs;
    for (const Interval& a : found) {
        for (const Interval& b : sent) {
            const double stretch = b.Length() / a.Length();
            if (a.gap == b.gap && PitchFits(a.frequency, b.frequency, pitch) && stretch > 0.75 && stretch < 1.3) {
                pairs.push_back({&a, &b});
            }
        }
    }
    return pairs;
}

// As fast as the pitch, or with the pitch corrected: at a known speed, or at one that the lengths agree on.
std::vector<double> TemposOf(std::span<const Pair> pairs, double pitch) {
    std::vector<Vote> votes;
    for (const Pair& pair : pairs) {
        const double tempo = pair.sent->Length() / pair.found->Length();
        if (pair.found->Length() > 0.4 && tempo > kSlowest && tempo < kFastest) {
            votes.push_back({tempo, 1});
        }
    }
    std::vector<double> tempos = Clusters(std::move(votes), 0.006, kMostTempos);
    for (const double speed : kCorrectedSpeeds) {  // lengths of short bursts say too little then
        tempos.push_back(speed * pitch);
    }
    tempos.insert(tempos.begin(), pitch);
    return tempos;
}

std::vector<Pair> SameLengths(std::span<const Pair> pairs, double tempo, double reach = kSameLength) {
    std::vector<Pair> same;
    for (const Pair& pair : pairs) {
        if (std::abs(pair.found->Length() - pair.sent->Length() / tempo) < reach) {
            same.push_back(pair);
        }
    }
    return same;
}

// Where the cycle begins, in [0, cycle) of the recording's time.
double PhaseOf(const Pair& pair, double tempo, double cycle) {
    const double start = (pair.found->start + pair.found->end) / 2 - (pair.sent->start + pair.sent->end) / 2 / tempo;
    return start - std::floor(start / cycle) * cycle;
}

double Around(double difference, double cycle) {
    return difference - std::round(difference / cycle) * cycle;
}

// The line through what was found over when it was sent.
class Line {
public:
    void Add(double sent, double found) {
        ++mCount;
        mSent += sent;
        mFound += found;
        mSquares += sent * sent;
        mFoundSquares += found * found;
        mProducts += sent * found;
    }

    /// Seconds of the recording a second of the clip; 0 where it takes a longer stretch to tell.
    [[nodiscard]] double Slope() const {
        constexpr double kLeastSpread = 0.5;  // s, standard deviation
        return mCount > 2 && Variance() > kLeastSpread * kLeastSpread ? Covariance() / Variance() : 0;
    }

    /// How far the slope may be off: its standard deviation, by how far what was found lies beside the line. Cut bursts
    /// and channels that are late move single points by 20 ms.
    [[nodiscard]] double Doubt() const {
        constexpr double kLeastScatter = 0.002;  // s
        const double ofFound = mFoundSquares / mCount - mFound / mCount * (mFound / mCount);
        const double beside = std::max(0.0, ofFound - Covariance() * Covariance() / Variance()) * mCount;
        const double scatter = std::max(beside / (mCount - 2), kLeastScatter * kLeastScatter);
        return std::sqrt(scatter / (mCount * Variance()));
    }

private:
    [[nodiscard]] double Variance() const { return mSquares / mCount - mSent / mCount * (mSent / mCount); }
    [[nodiscard]] double Covariance() const { return mProducts / mCount - mSent / mCount * (mFound / mCount); }

    double mCount = 0;
    double mSent = 0;
    double mFound = 0;
    double mSquares = 0;
    double mFoundSquares = 0;
    double mProducts = 0;
};

// What lies where a cycle that begins at `phase` has it.
class Tally {
public:
    Tally(std::span<const Pair> pairs, const Reference& reference, double tempo, double phase, double reach)
        : mTempo(tempo), mCycle(reference.cycle / tempo), mPhase(phase) {
        for (const Pair& pair : pairs) {
            const double off = Around(PhaseOf(pair, tempo, mCycle) - phase, mCycle);
            if (std::abs(off) < reach) {
                Count(pair, off);
            }
        }
    }

    [[nodiscard]] int Matched() const { return static_cast<int>(mSeen.size()); }
    [[nodiscard]] double First() const { return mFirst; }
    [[nodiscard]] double Last() const { return mLast; }
    [[nodiscard]] double MeanOffset() const { return mOffsets / mCount; }
    [[nodiscard]] double Tempo() const { return mLine.Slope() > 0 ? 1 / mLine.Slope() : mTempo; }
    /// The tempo is another than the pitch, beyond doubt.
    [[nodiscard]] bool IsCorrected(double pitch) const {
        constexpr double kBeyondDoubt = 5;  // standard deviations
        const double off = std::abs(Tempo() / pitch - 1);
        return off > kCorrected && (mLine.Slope() <= 0 || off > kBeyondDoubt * mLine.Doubt());
    }
    [[nodiscard]] bool Explains(const Interval* found) const { return mFound.contains(found); }
    [[nodiscard]] bool Has(const Interval* sent, double start) const {
        return std::ranges::any_of(mSeen, [&](const auto& seen) {
            return seen.first == sent && std::abs(static_cast<double>(seen.second) * kBucket - start) < 2 * kBucket;
        });
    }

private:
    static constexpr double kBucket = 0.25;  // s: the same stretch at several inputs counts once

    void Count(const Pair& pair, double off) {
        const double start = pair.found->start - off;
        mFound.insert(pair.found);
        if (!Has(pair.sent, start)) {
            mSeen.emplace(pair.sent, std::lround(start / kBucket));
        }
        const double number = std::round((start - pair.sent->start / mTempo - mPhase) / mCycle);
        mLine.Add((pair.sent->start + pair.sent->end) / 2 + number * mCycle * mTempo,
                  (pair.found->start + pair.found->end) / 2);
        mFirst = mCount == 0 ? pair.found->start : std::min(mFirst, pair.found->start);
        mLast = mCount == 0 ? pair.found->end : std::max(mLast, pair.found->end);
        mOffsets += off;
        ++mCount;
    }

    double mTempo;
    double mCycle;
    double mPhase;
    std::set<std::pair<const Interval*, long>> mSeen;
    std::set<const Interval*> mFound;
    Line mLine;
    double mFirst = 0;
    double mLast = 0;
    double mOffsets = 0;
    int mCount = 0;
};

int CountMissed(const Tally& tally, std::span<const Interval> sent, double cycle, const Placing& placing) {
    int missed = 0;
    for (const Interval& interval : sent) {
        const double first = placing.ToRecording(interval.start);
        const double number = std::ceil((tally.First() - kSamePlace - first) / cycle);
        const double latest = tally.Last() + kSamePlace - interval.Length() / placing.tempo;
        const auto count = static_cast<std::int64_t>(std::ceil((latest - first) / cycle - number));
        for (std::int64_t i = 0; i < count; ++i) {
            missed += tally.Has(&interval, first + (number + static_cast<double>(i)) * cycle) ? 0 : 1;
        }
    }
    return missed;
}

// The cycle that begins about `roughPhase`, at `tempo`.
Sighting Judge(std::span<const Pair> pairs, std::span<const Interval> sent, const Reference& reference, double pitch,
               double tempo, const Tally& rough, double roughTempo, double roughPhase, double reach) {
    const double cycle = reference.cycle / tempo;
    // A turn about the first of what was found.
    const double number = std::floor((rough.First() - roughPhase) / (reference.cycle / roughTempo));
    const double phase = roughPhase + rough.MeanOffset() + number * (reference.cycle / roughTempo - cycle);
    const Tally tally(pairs, reference, tempo, phase, reach);
    if (tally.Matched() == 0) {
        return {};
    }
    double start = phase + tally.MeanOffset();
    start += std::floor((tally.First() + kSamePlace - start) / cycle) * cycle;
    const Placing placing{start, tempo, pitch};
    return {&reference,    placing,     tally.Matched(), CountMissed(tally, sent, cycle, placing),
            tally.First(), tally.Last()};
}

// As fast as the pitch, and with it corrected where what was found looks like that: time that jumps does too.
std::vector<Sighting> JudgeTempos(std::span<const Pair> pairs, std::span<const Interval> sent,
                                  const Reference& reference, double pitch, double roughTempo, double roughPhase,
                                  double reach) {
    const Tally rough(pairs, reference, roughTempo, roughPhase, reach);
    if (rough.Matched() == 0) {
        return {};
    }
    std::vector<Sighting> sightings = {
        Judge(pairs, sent, reference, pitch, pitch, rough, roughTempo, roughPhase, reach)};
    if (rough.IsCorrected(pitch)) {
        sightings.push_back(Judge(pairs, sent, reference, pitch, rough.Tempo(), rough, roughTempo, roughPhase, reach));
    }
    return sightings;
}

// A gap of the length that one has, with the tone for long enough on both sides; between it and a dropout the tone may
// be short, where the gap is as long as it should be.
bool IsOneGap(const Pair& pair, double pitch) {
    constexpr double kLongEnough = 0.9;  // s
    constexpr double kLonger = 0.4;      // s
    constexpr double kLong = 0.06;       // s
    constexpr double kCodedGap = 0.015;  // s: what a codec may leave of its edges
    constexpr double kSameGap = 0.004;   // s
    const double off = std::abs(pair.found->Length() - pair.sent->Length() / pitch);
    const double shortest = pair.found->shortest;
    return pair.found->gap &&
           (shortest > kLongEnough || (shortest > kLonger && off < kCodedGap) || (shortest > kLong && off < kSameGap));
}

bool IsKnownSpeed(double speed) {
    return std::abs(speed - 1) < 0.004 || FindKnownSpeed(speed, 2500) != nullptr;
}

// One gap names a sequence of one pitch only where all about it is as it should be: a dropout elsewhere makes tones
// short, as if they were retimed.
bool OneGapNames(std::span<const Pair> pairs, const Placing& placing) {
    const double pitch = placing.pitch;
    return IsKnownSpeed(pitch) && placing.tempo == pitch &&
           std::ranges::any_of(pairs, [pitch](const Pair& pair) { return IsOneGap(pair, pitch); });
}

// Folded or lost channels leave much out; several stretches of several pitches in their places cannot be chance.
bool IsEnough(const Sighting& sighting, std::span<const Pair> pairs) {
    const bool onePitch = sighting.reference->Frequencies().size() == 1;
    const bool isExplained = IsKnownSpeed(sighting.placing.pitch) && IsKnownSpeed(sighting.placing.tempo);
    if (!onePitch && !isExplained && sighting.matched < kFewestAtAnySpeed) {
        return false;
    }
    if (sighting.matched < kFewest && !(onePitch && OneGapNames(pairs, sighting.placing))) {
        return false;
    }
    const double mostMissed = sighting.matched > kFewest && !onePitch ? 2.5 : 1;
    return sighting.missed <= mostMissed * sighting.matched;
}

// Tones of the sequence's pitches that it does not explain; the same at several inputs is one.
int CountUnexplained(const Tally& tally, std::span<const Pair> pairs) {
    constexpr double kOneTone = 0.25;  // s
    std::set<long> unexplained;
    for (const Pair& pair : pairs) {
        if (!pair.found->gap && !tally.Explains(pair.found)) {
            unexplained.insert(std::lround(pair.found->start / kOneTone));
        }
    }
    return static_cast<int>(unexplained.size());
}

// How good a sighting is beside others: what it explains, also where time has jumped, less what it does not.
double Worth(const Sighting& sighting, std::span<const Pair> pairs, std::span<const Interval> sent) {
    const Placing& placing = sighting.placing;
    const double cycle = sighting.reference->cycle / placing.tempo;
    const std::vector<Pair> alike = SameLengths(pairs, placing.tempo, kTornPlace);
    const double phase = placing.start - std::floor(placing.start / cycle) * cycle;
    const Tally torn(alike, *sighting.reference, placing.tempo, phase, kTornPlace);
    const int missed = CountMissed(torn, sent, cycle, placing) + CountUnexplained(torn, pairs);
    return sighting.matched + kOfTorn * (torn.Matched() - sighting.matched) - kOfMissed * missed;
}

struct Candidate {
    Sighting sighting;
    double worth = 0;
};

void KeepBetter(const Candidate& candidate, std::optional<Candidate>& best) {
    if (!best || candidate.worth > best->worth) {
        best = candidate;
    }
}

std::optional<Candidate> FindOne(std::span<const ToneRun> runs, std::span<const Interval> found,
                                 const Reference& reference, double reach) {
    std::optional<Candidate> best;
    const std::vector<Interval> sent = IntervalsOf(reference);
    for (const double pitch : PitchesOf(runs, reference)) {
        const std::vector<Pair> pairs = PairsOf(found, sent, pitch);
        for (const double tempo : TemposOf(pairs, pitch)) {
            const std::vector<Pair> same = SameLengths(pairs, tempo);
            std::vector<Vote> votes;
            votes.reserve(same.size());
            for (const Pair& pair : same) {
                votes.push_back({PhaseOf(pair, tempo, reference.cycle / tempo), 1});
            }
            for (const double phase : Clusters(std::move(votes), reach, 3)) {
                for (const Sighting& sighting : JudgeTempos(same, sent, reference, pitch, tempo, phase, reach)) {
                    if (sighting.matched > 0 && IsEnough(sighting, same)) {
                        KeepBetter({sighting, Worth(sighting, pairs, sent)}, best);
                    }
                }
            }
        }
    }
    return best;
}

}  // namespace

std::optional<Sighting> FindIdent(std::span<const ToneRun> runs, std::span<const Reference> references) {
    const std::vector<Interval> found = IntervalsOf(runs);
    for (const double reach : {kSamePlace, kTornPlace}) {
        std::optional<Candidate> best;
        for (const Reference& reference : references) {
            if (const auto candidate = FindOne(runs, found, reference, reach)) {
                KeepBetter(*candidate, best);
            }
        }
        if (best) {
            return best->sighting;
        }
    }
    return std::nullopt;
}

}  // namespace lineup::sound
