#include "Host/Lineup/Check/Sound/Measure/ClippedSine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using lineup::sound::LineFindings;

// Half the sine of this order that a sine holds whose tops are cut off, summed over a period.
double CutSine(double part, int n) {
    constexpr int kSamples = 4000;
    double sum = 0;
    for (int i = 0; i < kSamples; ++i) {
        const double turn = 2 * std::numbers::pi * (i + 0.5) / kSamples;
        sum += std::clamp(std::sin(turn), -part, part) * std::sin(n * turn) / kSamples;
    }
    return sum;
}

// The harmonics of it, with so much of its fundamental beside the third; each known to `doubt`.
LineFindings CutLines(double part, double beside = 0, double doubt = 1e-5) {
    LineFindings lines;
    for (const int n : {3, 5, 7}) {
        lines.harmonic[static_cast<std::size_t>(n - 2)] = {
            .sum = CutSine(part, n) / CutSine(part, 1) + (n == 3 ? beside : 0), .weight = 1, .doubts = doubt * doubt};
    }
    return lines;
}

TEST(ClippedSine, HoldsTheHarmonicsOfASineWhoseTopsAreCutOff) {
    for (const double part : {0.3, 0.7, 0.95}) {
        EXPECT_NEAR(lineup::sound::ClippedGain(part), 2 * CutSine(part, 1), 1e-6) << part;
        EXPECT_NEAR(lineup::sound::PartOfFundamental(2 * CutSine(part, 1) / part), part, 2e-6);
        for (const int n : {3, 5, 7}) {
            EXPECT_NEAR(lineup::sound::ClippedHarmonic(part, n), CutSine(part, n) / CutSine(part, 1), 1e-6)
                << part << ", harmonic " << n;
        }
    }
    EXPECT_EQ(lineup::sound::PartOfFundamental(1), 1);
}

struct CutCase {
    const char* what;
    LineFindings lines;
    double part;  // 0: something else bends it
};

TEST(ClippedSine, IsToldFromOtherBendsByItsHarmonics) {
    LineFindings withoutFifth = CutLines(0.7);
    withoutFifth.harmonic[3] = {};
    const CutCase rows[] = {
        {"tops cut off deep", CutLines(0.3), 0.3},
        {"tops cut off", CutLines(0.7), 0.7},
        {"tops just touched", CutLines(0.98), 0.98},
        {"as much again of the third harmonic", CutLines(0.7, 0.13), 0},
        {"nothing that stands out", CutLines(0.98, 0, 0.01), 0},
        {"a fifth harmonic that was not measured", withoutFifth, 0},
    };
    for (const CutCase& row : rows) {
        EXPECT_NEAR(PartOfHarmonics(row.lines).value_or(0), row.part, 0.0006) << row.what;
    }
}

// Where it was cut off is known to six thousandths; what a sampled edge folds back is left out.
TEST(ClippedSine, HasNothingBesideItButWhatNoPartNearExplains) {
    for (const double off : {-0.006, 0.0, 0.006}) {
        EXPECT_EQ(BesideClipped(CutLines(0.5), 0.5 + off), 0) << off;
        EXPECT_NEAR(BesideClipped(CutLines(0.98, 0.03), 0.98 + off), 0.03, 0.006) << off;
    }
    EXPECT_GT(BesideClipped(CutLines(0.5), 0.515), 0.001);
    EXPECT_GT(BesideClipped(CutLines(0.5), 0.485), 0.001);
    EXPECT_EQ(BesideClipped(CutLines(0.5, 0.03, 0.01), 0.5), 0);  // not beyond what is doubtful
}

}  // namespace
