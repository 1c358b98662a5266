#include "Tests/Src/ToneGenerator/GeneratorRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

using oracle::kTicksAt48kHz;
using test::GuardedChannels;

/// A sequence that may be cut at multiples of `grid` samples of 48 kHz. The piece in which it counts the most cycles
/// has `longestCycles` of them.
struct Cutting {
    oracle::Ident ident;
    std::int64_t grid;
    double longestCycles;
};

class IdentSplits : public testing::TestWithParam<Cutting> {};

// `pieces` - 1 cuts at multiples of `grid` samples, and `count`; in order, some perhaps twice.
std::vector<std::int64_t> RandomCuts(std::int64_t count, std::int64_t grid, int pieces, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::int64_t> anyCut(0, count / grid);
    std::vector<std::int64_t> cuts = {count};
    for (int i = 1; i < pieces; ++i) {
        cuts.push_back(anyCut(random) * grid);
    }
    std::ranges::sort(cuts);
    return cuts;
}

TEST_P(IdentSplits, SoundTheSameWhereverTheyAreCut) {
    const auto& [ident, grid, longestCycles] = GetParam();
    const std::int64_t count = ident.CycleTicks() / kTicksAt48kHz + 144000;
    GuardedChannels whole = test::Generate(ident, {kTicksAt48kHz, 0, count});
    for (unsigned seed = 0; seed < 4; ++seed) {
        std::int64_t first = 0;
        for (const std::int64_t cut : RandomCuts(count, grid, 50, seed)) {
            GuardedChannels piece = test::Generate(ident, {kTicksAt48kHz, first * kTicksAt48kHz, cut - first});
            for (std::size_t c = 0; c < ident.channels; ++c) {
                for (std::size_t i = 0; i < piece[c].Samples().size(); ++i) {
                    ASSERT_NEAR(piece[c][i], whole[c][static_cast<std::size_t>(first) + i],
                                oracle::Stray(longestCycles, 0.125))
                        << "channel " << c << ", sample " << i << " from " << first;
                }
            }
            first = cut;
        }
    }
}

// A lone burst of the multichannel sequence takes its phase from the request, which a cut at whole milliseconds leaves.
INSTANTIATE_TEST_SUITE_P(Sequences, IdentSplits,
                         testing::Values(Cutting{oracle::kStereo1000, 1, 6000}, Cutting{oracle::kStereo400, 1, 2400},
                                         Cutting{oracle::kMultichannel, 48, 1200}, Cutting{oracle::kBlits, 1, 132}),
                         [](const auto& row) { return row.param.ident.name; });

}  // namespace
