#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <span>

namespace {

using model::Ident;
using test::GuardedChannels;

constexpr std::int64_t kSample = model::kTicksPerSampleAt48kHz;

// How far two renderings may stray that count a different number of whole cycles with a 2 pi that is 1.7485e-7
// too large: for the longest piece of each sequence, cycles * 1.7485e-7 * level, and rounding.
constexpr double Bound(double longestPieceSeconds, double frequencyHz) {
    return 0.125 * (longestPieceSeconds * frequencyHz * 1.7485e-7 + 1e-7);
}

// Samples [0, count) of 48 kHz rendered in pieces that end at `cuts`, the last of which is `count`.
std::vector<std::vector<float>> RenderInPieces(Ident ident, const std::vector<std::int64_t>& cuts) {
    std::vector<std::vector<float>> joined(model::ChannelCount(ident));
    std::int64_t first = 0;
    for (const std::int64_t cut : cuts) {
        GuardedChannels piece = model::Generate(ident, {kSample, first * kSample, cut - first});
        for (std::size_t c = 0; c < joined.size(); ++c) {
            const auto samples = piece[c].Samples();
            joined[c].insert(joined[c].end(), samples.begin(), samples.end());
        }
        first = cut;
    }
    return joined;
}

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

void ExpectNear(GuardedChannels& whole, const std::vector<std::vector<float>>& joined, double bound) {
    for (std::size_t c = 0; c < joined.size(); ++c) {
        ASSERT_EQ(joined[c].size(), whole[c].Samples().size());
        for (std::size_t i = 0; i < joined[c].size(); ++i) {
            const double stray = static_cast<double>(joined[c][i]) - static_cast<double>(whole[c][i]);
            ASSERT_LE(std::abs(stray), bound) << "channel " << c << ", sample " << i;
        }
    }
}

TEST(IdentSplits, EbuStereoSoundsTheSameWhereverItIsCut) {
    for (const Ident ident : {Ident::kStereo1000, Ident::kStereo400}) {
        GuardedChannels whole = model::Generate(ident, {kSample, 0, 288000});
        for (unsigned seed = 0; seed < 4; ++seed) {
            const auto joined = RenderInPieces(ident, RandomCuts(288000, 1, 40, seed));
            ExpectNear(whole, joined, Bound(6.0, ident == Ident::kStereo1000 ? 1000.0 : 400.0));
        }
    }
}

TEST(IdentSplits, BlitsSoundsTheSameWhereverItIsCut) {
    // A slot is 0.1 s; the tone with the most cycles in it is the one of 2000 Hz, at half the level.
    GuardedChannels whole = model::Generate(Ident::kBlits, {kSample, 0, 643200});
    for (unsigned seed = 0; seed < 4; ++seed) {
        const auto joined = RenderInPieces(Ident::kBlits, RandomCuts(643200, 1, 60, seed));
        ExpectNear(whole, joined, Bound(0.1, 1320.0));
    }
}

TEST(IdentSplits, BlitsIsTheSameToTheBitWhenItIsCutAtSlots) {
    GuardedChannels whole = model::Generate(Ident::kBlits, {kSample, 0, 643200});
    const auto joined = RenderInPieces(Ident::kBlits, RandomCuts(643200, 4800, 40, 9));
    for (std::size_t c = 0; c < joined.size(); ++c) {
        EXPECT_TRUE(model::SameBits(whole[c].Samples(), joined[c])) << "channel " << c;
    }
}

TEST(IdentSplits, EbuMultichannelSoundsTheSameWhenItIsCutAtTenthsOfASecond) {
    // Low frequency, 80 Hz in one piece of 12 s, counts 960 cycles; a step of half a second counts 500.
    GuardedChannels whole = model::Generate(Ident::kMultichannel, {kSample, 0, 576000});
    for (unsigned seed = 0; seed < 4; ++seed) {
        const auto joined = RenderInPieces(Ident::kMultichannel, RandomCuts(576000, 4800, 40, seed));
        ExpectNear(whole, joined, Bound(12.0, 80.0));
    }
}

TEST(IdentSplits, EbuMultichannelOutsideItsBurstsSoundsTheSameWhereverItIsCut) {
    // From 8.0 s, where the last burst ends, to 15.5 s, where the first of the next cycle begins.
    constexpr std::int64_t kFirst = 384000;
    constexpr std::int64_t kCount = 360000;
    GuardedChannels whole = model::Generate(Ident::kMultichannel, {kSample, kFirst * kSample, kCount});
    for (const std::int64_t cut : {1, 7777, 47999, 48001, 200003}) {
        GuardedChannels late = model::Generate(Ident::kMultichannel, {kSample, (kFirst + cut) * kSample, kCount - cut});
        for (std::size_t c = 0; c < 6; ++c) {
            for (std::int64_t i = cut; i < kCount; ++i) {
                const double stray = static_cast<double>(whole[c][static_cast<std::size_t>(i)]) -
                                     static_cast<double>(late[c][static_cast<std::size_t>(i - cut)]);
                ASSERT_LE(std::abs(stray), Bound(7.5, 80.0)) << "channel " << c << ", sample " << i;
            }
        }
    }
}

TEST(IdentSplits, EbuMultichannelBurstStepsInPhaseWhereARequestOffTheTenthsIsCut) {
    // The burst of the left channel, 168000 to 191999, in requests that are cut off the tenths, at 12 and 180000:
    // its first half has the phase of sample 12, a quarter of a cycle, and its second that of clip time.
    const auto joined = RenderInPieces(Ident::kMultichannel, {12, 180000, 192000});
    const std::span left(joined[0]);
    EXPECT_TRUE(model::IsToneAt48kHz(left.subspan(168000, 12000), 12, 1000.0, 0.125));
    EXPECT_TRUE(model::IsToneAt48kHz(left.subspan(180000, 12000), 180000, 1000.0, 0.125));
    EXPECT_NEAR(left[179999], 0.125 * std::cos(2 * std::numbers::pi / 48), 1e-5);  // near the top
    EXPECT_EQ(left[180000], 0.0F);
}

}  // namespace
