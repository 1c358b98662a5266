#include "Host/Lineup/Check/Sound/Events/Jumps.h"
#include "Host/Lineup/Check/Sound/Find/Find.h"
#include "Host/Lineup/Check/Sound/Find/Speeds.h"
#include "Host/Lineup/Check/Sound/Measure/Delays.h"
#include "Host/Lineup/Check/Sound/Measure/EdgeTrend.h"
#include "Host/Lineup/Check/Sound/Measure/LevelTrack.h"
#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <complex>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using lineup::sound::AgreeOnDelay;
using lineup::sound::EdgeVote;
using lineup::sound::LateEdge;
using lineup::sound::LevelChange;
using lineup::sound::LevelPoint;
using lineup::sound::Reference;
using lineup::sound::ToneRun;

const std::vector<Reference>& References() {
    static const std::vector<Reference> kReferences = lineup::sound::MakeIdentReferences(test::Bundle());
    return kReferences;
}

const Reference& ReferenceOf(std::string_view name) {
    return *std::ranges::find(References(), name, &Reference::name);
}

struct Heard {
    const char* ident;
    double from;       // s of the clip, heard for little more than a cycle
    double jumpAt;     // s of the clip
    double lost;       // s
    double tempo = 1;  // with the pitch kept
};

// The tones of a recording that begins at `from`, as they are followed: bursts that follow each other at once are one.
std::vector<ToneRun> RunsOf(const Reference& reference, const Heard& heard) {
    const double end = heard.from + 1.05 * reference.cycle;
    std::vector<ToneRun> runs;
    const auto at = [&](double clip) {
        return (clip - heard.from) / heard.tempo - (clip > heard.jumpAt ? heard.lost : 0);
    };
    for (int cycle = -1; cycle <= 2; ++cycle) {
        for (const lineup::sound::RefBurst& burst : reference.bursts) {
            const double on = std::max(burst.on + cycle * reference.cycle, heard.from);
            const double off = std::min(burst.off + cycle * reference.cycle, end);
            if (off - on > 0.1) {
                runs.push_back({burst.channel, burst.frequency, 0.125, at(on), at(off), on == heard.from, off == end});
            }
        }
    }
    std::ranges::sort(runs, {}, &ToneRun::off);
    return runs;
}

TEST(FindIdent, KnowsThePlaceAlsoWhereTimeJumpsOrThePitchIsKept) {
    for (const Heard& heard : std::vector<Heard>{
             {"blits", 0, 0, 0},
             {"blits", 3.1, 9, 0.02},
             {"blits", 0, 7.5, -0.0178},
             {"blits", 5.6, 0, 0, 25.0 / 24},
             {"blits", 4.2, 0, 0, 24.0 / 25},
             {"ebu-5.1", 0, 0, 0},
             {"ebu-5.1", 1.68, 5.7, -0.0444},
             {"ebu-5.1", 5.23, 9.8, 0.0624},
             {"ebu-5.1", 8.06, 15.6, -0.0221},
         }) {
        const std::string ident = heard.ident;
        const Reference& reference = ReferenceOf(ident);
        const auto sighting = FindIdent(RunsOf(reference, heard), References());
        const std::string what = ident + " from " + std::to_string(heard.from);
        ASSERT_TRUE(sighting) << what;
        EXPECT_EQ(sighting->reference->name, heard.ident) << what;
        EXPECT_NEAR(sighting->placing.tempo, heard.tempo, 0.002) << what;
        const double cycle = reference.cycle / heard.tempo;
        const double start = -heard.from / heard.tempo;
        const double off = std::remainder(sighting->placing.start - start, cycle);
        EXPECT_LT(std::min(std::abs(off), std::abs(off + heard.lost)), 0.035) << what;
    }
}

// Of a few stretches, lengths by chance agree on some tempo.
TEST(FindIdent, AsksForMoreAtASpeedThatNothingExplains) {
    for (const double tempo : {1.0, 25.0 / 24, 1.15}) {
        std::vector<ToneRun> runs = RunsOf(ReferenceOf("blits"), {"blits", 0, 0, 0, tempo});
        EXPECT_TRUE(FindIdent(runs, References())) << "whole, at " << tempo;
        runs.resize(4);
        EXPECT_EQ(FindIdent(runs, References()).has_value(), tempo < 1.1) << "four tones, at " << tempo;
    }
}

struct EdgesCase {
    const char* what;
    std::vector<double> late;  // us: a beginning, an end, and so on
    bool lossy;
    std::optional<double> agreed;
    std::size_t shared = 0;  // edges from the last one back that are of a tone which other channels have too
    double doubt = 1;        // us: of each edge
    double apart = 0;        // us: beginnings and ends, from where they are together
    bool gaps = false;       // an end comes first
};

TEST(AgreeOnDelay, TakesTheEdgesThatWhatThePathDoesToTonesLeavesAlone) {
    for (const EdgesCase& edges : std::vector<EdgesCase>{
             {"edges that agree", {500, 510, 495, 505}, false, 500},
             {"bursts that a codec makes shorter", {773, 243, 771, 245}, true, 508, 0, 1, 264},
             {"bursts that it makes longer", {-117, 370, 2, 268}, true, 130.75, 0, 1, 188.25},
             {"edges that say nothing", {1224, -17, 0, 895}, true, {}},
             {"one burst", {773, 243}, true, {}},
             {"one gap that is hardly any longer", {773, 703}, true, 738, 0, 1, 35, true},
             {"the same beside one that is torn", {773, 703, 12404, 40}, true, 738, 0, 1, 35, true},
             {"one burst that is hardly any shorter, which may be chance", {773, 703}, true, {}},
             {"beginnings that agree alone, as a codec moves them in each cycle", {249, 1214, 248}, true, {}},
             {"one beginning", {107}, true, {}},
             {"beginnings and ends that agree neither way", {773, 243, 771, 345}, false, {}},
             {"a limiter, which has settled where tones end", {-915, 684, 528, 701}, false, 684},
             {"beginnings that agree, of the one tone that is its own", {-915, 684, -400, 700, -915}, false, 684},
             {"a leak in the tone that all channels have", {15679, 15678, 17354, 17356}, false, 15678, 2},
             {"the same after a codec", {-6964, -7001, -6398}, true, -7001, 1},
             {"edges that noise moves, and which meet by chance", {220, 180, 660, 904}, false, {}, 2, 150},
             {"one edge that no other channel has", {-6964, -6398, -6203}, true, {}, 2},
         }) {
        std::vector<LateEdge> late;
        for (std::size_t i = 0; i < edges.late.size(); ++i) {
            const bool shared = i + edges.shared >= edges.late.size();
            late.push_back({static_cast<double>(i), edges.late[i] * 1e-6, 1, 1000, (i % 2 == 0) != edges.gaps, shared,
                            edges.doubt * 1e-6});
        }
        const auto agreed = AgreeOnDelay(late, edges.lossy);
        ASSERT_TRUE(agreed) << edges.what;
        ASSERT_EQ(agreed->agree, edges.agreed.has_value()) << edges.what;
        EXPECT_TRUE(!edges.agreed || std::abs(agreed->late * 1e6 - *edges.agreed) < 0.1)
            << edges.what << ": " << agreed->late * 1e6;
        EXPECT_NEAR(agreed->doubt * 1e6, edges.apart, 0.1) << edges.what;
    }
    EXPECT_FALSE(AgreeOnDelay({}, true));
}

// A channel's tones, `delay` seconds late, as its slots hold them.
lineup::sound::Cells CellsOf(const Reference& reference, std::size_t channel, double delay) {
    lineup::sound::Cells cells(reference, 1);
    for (std::size_t slot = 0; slot < reference.slots.size(); ++slot) {
        const auto blocks = static_cast<std::size_t>(reference.slots[slot].Length() / 0.1);
        lineup::sound::InputSlot heard{
            std::vector<lineup::sound::BlockSound>(blocks), std::vector<bool>(blocks, true), {}, 0};
        for (const lineup::sound::RefTone& tone : reference.slots[slot].tones) {
            const auto late = std::polar(1.0, -2 * std::numbers::pi * tone.frequency * delay);
            heard.gains.emplace_back(blocks, tone.gain[channel] * late);
        }
        cells.Add({{0, slot}, 0, 0, 0, {heard}});
    }
    return cells;
}

// Coarse codecs let a tone begin on time and end early: bursts are then early, and the phases know better, unless there
// is one pitch only.
TEST(DelayOf, IsToldByThePhasesWhereACodecMovesTheEdges) {
    constexpr double kEarly = -0.00029;  // s: half of what the ends are off
    struct Told {
        const char* ident;
        std::size_t channel;
        double delay;  // s
        int polarity;
        double doubt = -kEarly;
    };
    for (const Told& told : std::vector<Told>{{"blits", 1, 0, 1},
                                              {"blits", 1, 0.0001, 1},
                                              {"blits", 4, 0, 1, 0.00003},  // upside down it fits nearly as well
                                              {"ebu-stereo-1000", 1, 0, 0}}) {
        const Reference& reference = ReferenceOf(told.ident);
        const auto found = lineup::sound::DelayOf(CellsOf(reference, told.channel, told.delay), reference, 0,
                                                  told.channel, 1, told.delay + kEarly, told.doubt);
        EXPECT_EQ(found.polarity, told.polarity) << told.ident << ", " << told.delay;
        EXPECT_NEAR(found.delay, told.delay, 1e-9) << told.ident << ", " << told.delay;
    }
}

TEST(FindStep, LiesBetweenTheEdgesThatAreOnTimeAndThoseThatAreNot) {
    std::vector<EdgeVote> edges;
    for (int i = 0; i < 10; ++i) {
        edges.push_back({static_cast<double>(i), i < 6 ? 0.001 : -0.029, static_cast<std::size_t>(i % 2), false});
    }
    const auto step = lineup::sound::FindStep(edges);
    ASSERT_TRUE(step);
    EXPECT_NEAR(step->at, 5.5, 1e-9);
    EXPECT_NEAR(step->lost, 0.03, 1e-9);
    edges.resize(6);
    EXPECT_FALSE(lineup::sound::FindStep(edges)) << "all on one level";
}

struct TrendCase {
    const char* what;
    double slope;               // s a second; 0 where there is no trend
    double (*late)(double at);  // ms
};

TEST(FindTrend, IsThatOfRetimingAndOfNothingElse) {
    for (const TrendCase& trend : std::vector<TrendCase>{
             {"retiming by a thousandth, in whole periods of 1000 Hz", 0.001, [](double at) { return std::round(at); }},
             {"slower by as much", -0.001, [](double at) { return -at; }},
             {"time that jumps once", 0, [](double at) { return at > 7 ? 9.0 : 0.0; }},
             {"edges that a limiter moves", 0, [](double at) { return std::fmod(3 * at, 2.0); }},
             {"a clock that was taken out", 0, [](double) { return 0.2; }},
         }) {
        lineup::sound::EdgesOfInputs edges(2);
        for (int i = 0; i < 24; ++i) {
            const double at = 0.55 * i;
            edges[static_cast<std::size_t>(i % 2)].push_back(
                {at, (trend.late(at) + 3 * (i % 2)) * 1e-3, 1, 1000, true, false, 0});
        }
        const auto found = lineup::sound::FindTrend(edges, lineup::sound::ScatterOfEdges(edges));
        ASSERT_EQ(found.has_value(), trend.slope != 0) << trend.what;
        EXPECT_NEAR(found ? found->slope : 0, trend.slope, 5e-5) << trend.what;
    }
}

TEST(FindKnownSpeed, IsTheNearestOne) {
    for (const auto& [ratio, known] : std::vector<std::pair<double, double>>{
             {0.99905, 1000.0 / 1001}, {1.00103, 1001.0 / 1000}, {1.0005, 0}, {1.0426, 25 * 1001.0 / 24000}}) {
        const auto* const found = lineup::sound::FindKnownSpeed(ratio, 300);
        EXPECT_NEAR(found == nullptr ? 0 : found->ratio, known, 2e-6) << ratio;
    }
}

// What was sent later than 5 s comes 0.01 s early. All beginnings are early by 1 ms besides, as a limiter makes them.
TEST(LostBetween, HoldsBeginningsAgainstBeginningsAndEndsAgainstEnds) {
    constexpr double kLost = 0.01;
    std::vector<lineup::sound::EdgeVote> edges;
    for (const double at : {1.0, 2.0, 3.0}) {
        edges.push_back({at, -0.001, 0, true});
    }
    edges.push_back({3.5, 0, 0, false});
    edges.push_back({6, -kLost, 0, false});
    EXPECT_NEAR(lineup::sound::LostBetweenAlike(edges, 5).value_or(0), kLost, 1e-9);
}

struct LevelCase {
    const char* what;
    LevelChange::Kind kind;
    double db;
    double (*level)(double second, bool full);
    double at = 0;    // s: of a step
    double step = 0;  // dB: beside parts
    double bent = 0;  // dB
};

TEST(ExplainLevels, NamesWhatLevelsDo) {
    using Kind = LevelChange::Kind;
    for (const LevelCase& levels : std::vector<LevelCase>{
             {"steady", Kind::None, 0, [](double, bool) { return -2.0; }},
             {"a step", Kind::Step, 3, [](double second, bool) { return second > 6.1 ? 1.0 : -2.0; }, 6.1},
             {"a limiter", Kind::Parts, 4, [](double, bool full) { return full ? -6.0 : -2.0; }},
             {"a step before a limiter", Kind::Parts, 4,
              [](double second, bool full) { return (full ? -6.0 : -2.0) - (second > 6.1 ? (full ? 1 : 3) : 0); }, 6.1,
              -1},
             {"a step before what bends tones", Kind::Step, -3,
              [](double second, bool full) { return (full ? -0.16 : 0.0) - (second > 6.1 ? 3 : 0); }, 6.1, 0, 0.3},
             {"riding", Kind::Riding, 0.8, [](double second, bool) { return std::fmod(second, 2.0) < 1 ? 0.0 : 1.0; }},
             {"too little", Kind::None, 0, [](double second, bool) { return second > 6.1 ? 0.05 : 0.0; }},
         }) {
        std::vector<LevelPoint> points;
        for (int i = 0; i < 60; ++i) {
            const bool full = i % 20 < 13;
            points.push_back({0.2 * i, levels.level(0.2 * i, full), static_cast<std::size_t>(i % 2), 0.1, full});
        }
        const LevelChange change = ExplainLevels(points, 2, 0.1, levels.bent);
        EXPECT_EQ(change.kind, levels.kind) << levels.what;
        EXPECT_NEAR(change.db, levels.db, 0.1) << levels.what;
        EXPECT_NEAR(change.at, levels.at, 0.2) << levels.what;
        EXPECT_NEAR(change.step.value_or(0), levels.step, 0.1) << levels.what;
    }
}

}  // namespace
