#include <lineup/Level.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Measure/Assign.h"
#include "Host/Lineup/Check/Sound/Measure/ClippedSine.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kWanderingLevel = 0.4;  // dB
constexpr double kCodedLevel = 0.7;      // dB: by how much a codec moves levels by itself
constexpr double kClippedDoubt = 0.3;    // dB
constexpr double kSeamsOfLowTone = 2;    // dB: what retiming that keeps the pitch takes from some periods
constexpr double kLeastClippedPart = 0.2;
constexpr double kBentBy = 2;  // times the harmonics' amplitude

struct Deviation {
    std::size_t input;
    double db;  // over what was sent
};

// How loud an input's own channel was there before its tops were cut off, without what leaks into it: of that, nothing
// is cut off where it sounds alone.
double OwnGain(const Case& check, std::size_t input) {
    const Arrival& arrival = check.At(input);
    const double leak =
        check.mixed[input] && arrival.channel ? arrival.gain - std::abs(check.parts[input][*arrival.channel]) : 0;
    return arrival.gain / ClippedGain(check.shapes[input].clipped) - leak;
}

// What an input's level was before the path moved it, or cut its tops off, dB.
double LevelOf(const Case& check, const LevelChange& change, std::size_t input) {
    const bool moved = change.kind == LevelChange::Kind::Step && change.levels[input];
    return moved ? *change.levels[input] : DbFromGain(OwnGain(check, input));
}

std::vector<Deviation> Deviations(const Case& check, const LevelChange& change) {
    const double sentDb = DbFromGain(check.Sent().Level());
    const double offset = check.expected->levelDb ? *check.expected->levelDb - sentDb : 0;
    std::vector<Deviation> deviations;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.At(input).sounds && !check.folded[input]) {
            deviations.push_back({input, LevelOf(check, change, input) - offset});
        }
    }
    return deviations;
}

// What most channels share; of several such, what is nearest to what was sent.
double SharedDb(const std::vector<Deviation>& deviations, double tolerance) {
    double best = 0;
    std::ptrdiff_t most = 0;
    for (const Deviation& deviation : deviations) {
        const auto count = std::ranges::count_if(
            deviations, [&](const Deviation& other) { return std::abs(other.db - deviation.db) <= tolerance; });
        if (count > most || (count == most && std::abs(deviation.db) < std::abs(best))) {
            most = count;
            best = deviation.db;
        }
    }
    double sum = 0;
    for (const Deviation& deviation : deviations) {
        sum += std::abs(deviation.db - best) <= tolerance ? deviation.db : 0;
    }
    return most > 0 ? sum / static_cast<double>(most) : 0;
}

std::string LouderOrSofter(double db) {
    return fmt::format("{:.2f} dB too {}", std::abs(db), db > 0 ? "loud" : "soft");
}

// The line-up levels in use; the difference is that of the place's own.
std::string AlignmentText(const Case& check, double db) {
    const double level = DbFromGain(check.Sent().Level()) + db;
    for (const double alignment : {-9.0, -12.0, -14.0, -15.0, -16.0, -20.0, -24.0}) {
        if (std::abs(level - alignment) < 0.15) {
            return fmt::format(", as for an alignment level of {:.0f} dBFS", alignment);
        }
    }
    return {};
}

// What codec noise, harmonics, retiming and a wandering speed may have moved an input's level by, dB.
double DoubtOf(const Case& check, std::size_t input) {
    const ShapeOfInput& shape = check.shapes[input];
    const double bent = shape.distorted ? kBentBy * std::sqrt(shape.harmonics) : 0;
    const double cut = shape.clipped < 1 ? kClippedDoubt : 0;
    const auto& channel = check.At(input).channel;
    const bool isRetimed = check.lineup->placing.tempo != check.lineup->placing.pitch;
    const double seams = isRetimed && channel && HasLowTone(check, *channel) ? kSeamsOfLowTone : 0;
    return DbFromGain(1 + CodecNoise(check, input) + bent) + cut + seams + (check.unsteady ? kWanderingLevel : 0);
}

// The same for what they share.
double SharedDoubt(const Case& check) {
    double doubt = 0;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const ShapeOfInput& shape = check.shapes[input];
        doubt = std::max(doubt, shape.clipped < 1 || shape.distorted || check.unsteady ? DoubtOf(check, input) : 0);
    }
    return doubt;
}

void AddStep(Case& check, double db, double second) {
    const double at = check.facts->startSeconds + second;
    CheckFault& fault =
        AddFault(check, "level-changes", {},
                 fmt::format("The level goes {} by {:.2f} dB at {:.3f} s.", db > 0 ? "up" : "down", std::abs(db), at));
    fault.measured = db;
    fault.at = at;
}

void AddChange(Case& check, const LevelChange& change) {
    switch (change.kind) {
        case LevelChange::Kind::None:
            return;
        case LevelChange::Kind::Step:
            AddStep(check, change.db, change.at);
            return;
        case LevelChange::Kind::Parts:
            AddFault(
                check, "level-changes", {},
                fmt::format("What is sent softer arrives {:.2f} dB too {} beside the rest: a limiter or a compressor.",
                            std::abs(change.db), change.db > 0 ? "loud" : "soft"))
                .measured = change.db;
            if (change.step) {
                AddStep(check, *change.step, change.at);
            }
            return;
        case LevelChange::Kind::Riding:
            AddFault(check, "level-changes", {}, fmt::format("The level moves by about {:.2f} dB.", change.db))
                .measured = change.db;
            return;
    }
}

using Points = std::vector<LevelPoint>;

// How loud the channel arrives, where it does, at the time of the point and in the same tone, against its mean: levels
// may move. 1 where that is not known.
double MovedAt(const Case& check, const Points& sorted, const LevelPoint& point, std::size_t channel) {
    constexpr double kSameTime = 0.05;  // s
    const auto first = std::ranges::lower_bound(sorted, point.at - kSameTime, {}, &LevelPoint::at);
    for (auto other = first; other != sorted.end() && other->at < point.at + kSameTime; ++other) {
        const double mean = std::abs(check.parts[other->input][channel]);
        if (check.At(other->input).channel == channel && other->slot == point.slot && other->tone == point.tone &&
            mean > 0) {
            return std::pow(10, other->db / 20) / mean;
        }
    }
    return 1;
}

// What leaks into an input sounds along with its own channel in some of the sequence's parts, and makes them louder or
// softer: how loud its own is there, dB.
double WithoutLeaks(const Case& check, const Points& sorted, const LevelPoint& point) {
    const std::size_t own = *check.At(point.input).channel;
    const RefTone& tone = check.Sent().slots[point.slot].tones[point.tone];
    const auto& parts = check.parts[point.input];
    std::complex<double> leaks;
    for (std::size_t channel = 0; channel < parts.size(); ++channel) {
        if (channel != own && tone.Amplitude(channel) > 0 &&
            WasHeardAlone(check.lineup->cells, check.Sent(), point.input, channel)) {
            leaks += parts[channel] * tone.gain[channel] * MovedAt(check, sorted, point, channel);
        }
    }
    // Along the tone's own phase, and across it.
    const std::complex<double> turned = leaks * std::polar(1.0, -std::arg(parts[own] * tone.gain[own]));
    const double heard = point.sent * std::pow(10, point.db / 20);
    const double left = std::sqrt(std::max(0.0, heard * heard - turned.imag() * turned.imag())) - turned.real();
    return left > 0 && point.sent > 0 ? DbFromGain(left / point.sent) : point.db;
}

// Of inputs that others leak into, their own levels.
void TakeOffLeaks(const Case& check, Points& points) {
    if (std::ranges::find(check.mixed, true) == check.mixed.end()) {
        return;
    }
    Points sorted = points;
    std::ranges::stable_sort(sorted, {}, &LevelPoint::at);
    for (LevelPoint& point : points) {
        if (check.mixed[point.input] && check.At(point.input).channel) {
            point.db = WithoutLeaks(check, sorted, point);
        }
    }
}

// What harmonics cost the fundamental depends on the level: by how much, in parts of it, at most.
double MostBent(const Case& check) {
    double bent = 0;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        const ShapeOfInput& shape = check.shapes[input];
        const bool isBent = shape.distorted && shape.clipped == 1;  // of what is cut off, the levels are as before
        const bool isOfGain = check.lineup->inputs[input].lines.harmonic[1].IsOfGain();
        bent = std::max(bent, isBent && !isOfGain ? 2 * kBentBy * std::sqrt(shape.harmonics) : 0);
    }
    return bent;
}

}  // namespace

LevelChange FindLevelChange(const Case& check) {
    double doubt = check.facts->lossy.value_or(false) ? kCodedLevel : 0;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        doubt = std::max(doubt, DbFromGain(1 + CodecNoise(check, input)));
    }
    Points points = check.lineup->levels;
    std::erase_if(points, [&](const LevelPoint& point) { return check.folded[point.input]; });
    TakeOffLeaks(check, points);
    for (LevelPoint& point : points) {
        const ShapeOfInput& shape = check.shapes[point.input];
        if (shape.clipped < 1) {  // as it was before
            const double part = PartOfFundamental(point.sent * std::pow(10, point.db / 20) / shape.top);
            point.db -= DbFromGain(ClippedGain(std::max(part, kLeastClippedPart)));
        }
        doubt = std::max(doubt, shape.clipped < 1 ? kClippedDoubt : 0);
    }
    const double bent = MostBent(check);
    const double least = check.Tolerance("level") + doubt + (check.unsteady ? kWanderingLevel : 0);
    LevelChange change = ExplainLevels(points, check.Inputs(), least, DbFromGain(1 + bent));
    const bool isExplained = std::abs(change.db) < DbFromGain(1 + bent);
    change.kind = isExplained ? LevelChange::Kind::None : change.kind;
    return change;
}

void DecideLevels(Case& check) {
    const double tolerance = check.Tolerance("level");
    const LevelChange& change = check.change;
    AddChange(check, change);
    if (change.kind == LevelChange::Kind::Parts || change.kind == LevelChange::Kind::Riding) {
        return;  // which of the levels is the right one cannot be known
    }
    const std::vector<Deviation> deviations = Deviations(check, change);
    const double shared = SharedDb(deviations, tolerance);
    if (!check.Sent().levelKnown) {
        check.Note("level-not-known", fmt::format("The tone arrives at {:.2f} dBFS; --level LEVEL says what was sent.",
                                                  DbFromGain(check.Sent().Level()) + shared));
    } else if (std::abs(shared) > tolerance + SharedDoubt(check)) {
        CheckFault& fault =
            AddFault(check, "level-wrong", {},
                     fmt::format("All channels are {}{}.", LouderOrSofter(shared), AlignmentText(check, shared)));
        fault.measured = shared;
        fault.expected = 0;
    }
    std::vector<std::size_t> others;
    double furthest = 0;
    for (const Deviation& deviation : deviations) {
        const double off = deviation.db - shared;
        const double doubt = DoubtOf(check, deviation.input);
        if (std::abs(off) > tolerance + doubt) {
            others.push_back(deviation.input);
            furthest = std::abs(off) > std::abs(furthest) ? off : furthest;
        }
    }
    if (!others.empty()) {
        CheckFault& fault = AddFault(check, "level-unbalanced", others,
                                     fmt::format("{} {}{} beside the others.", Who(check, others),
                                                 others.size() == 1 ? "is " : "are up to ", LouderOrSofter(furthest)));
        fault.measured = furthest;
        fault.expected = 0;
    }
}

}  // namespace lineup::sound
