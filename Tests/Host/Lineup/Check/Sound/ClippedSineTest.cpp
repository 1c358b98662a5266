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
    const char* what = nullptr;
    LineFindings lines;
    double part = 0;  // 0: something else bends it
};

TEST(ClippedSine, IsToldFromOtherBendsByItsHarmonics) {
    const auto with = [](double part, std::size_t n, const lineup::sound::HarmonicTally& harmonic) {
        LineFindings lines = CutLines(part);
        lines.harmonic[n - 2] = harmonic;
        return lines;
    };
    const CutCase rows[] = {
        {"tops cut off deep", CutLines(0.3), 0.3},
        {"hardly a fifth harmonic, and a high third", CutLines(0.6), 0.6},
        {"a third that is not so high, and others", CutLines(0.8), 0.8},
        {"tops just touched", CutLines(0.98), 0.98},
        {"as much again of the third harmonic", CutLines(0.7, 0.13), 0},
        {"nothing that stands out", CutLines(0.98, 0, 0.01), 0},
        {"a third alone that stands out, as of a soft bend", CutLines(0.9, 0, 0.006), 0},
        {"a third that does not stand out", with(0.9, 3, {.sum = 0.0329, .weight = 1, .doubts = 4e-4}), 0},
        {"another seventh", with(0.7, 7, {.sum = 0.01, .weight = 1}), 0},
        {"a seventh that was not measured", with(0.7, 7, {}), 0.7},
        {"a fifth that was not measured", with(0.7, 5, {}), 0},
    };
    for (const CutCase& row : rows) {
        EXPECT_NEAR(PartOfHarmonics(row.lines).value_or(0), row.part, 0.0006) << row.what;
    }
}

// Where it was cut off is known to six thousandths.
TEST(ClippedSine, HasNothingBesideItButWhatNoPartNearExplains) {
    for (const double off : {-0.006, 0.0, 0.006}) {
        EXPECT_EQ(BesideClipped(CutLines(0.5), 0.5 + off), 0) << off;
        EXPECT_NEAR(BesideClipped(CutLines(0.98, 0.03), 0.98 + off), 0.03, 0.006) << off;
    }
    EXPECT_GT(BesideClipped(CutLines(0.5), 0.515), 0.001);
    EXPECT_GT(BesideClipped(CutLines(0.5), 0.485), 0.001);
    EXPECT_EQ(BesideClipped(CutLines(0.5, 0.0012), 0.5), 0);      // what a sampled edge folds back
    EXPECT_EQ(BesideClipped(CutLines(0.5, 0.03, 0.01), 0.5), 0);  // not beyond what is doubtful
}

}  // namespace
