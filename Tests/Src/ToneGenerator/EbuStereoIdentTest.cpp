#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using model::Ident;
using model::IsSilent;
using model::IsToneAt48kHz;
using model::Request;

constexpr std::int64_t kSample = model::kTicksPerSampleAt48kHz;
constexpr std::int64_t kSecond = model::kTicksPerSecond;

TEST(EbuStereoIdent, LeftIsSilentForTheLastQuarterSecondOfEachCycle) {
    // 3 s are 144000 samples, 2.75 s are 132000. Two cycles.
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 0, 288000});
    const auto left = channels[0].Samples();
    EXPECT_TRUE(IsToneAt48kHz(left.subspan(0, 132000), 0, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(left.subspan(132000, 12000)));
    EXPECT_TRUE(IsToneAt48kHz(left.subspan(144000, 132000), 144000, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(left.subspan(276000, 12000)));
}

TEST(EbuStereoIdent, RightIsNeverSilent) {
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 0, 288000});
    EXPECT_TRUE(IsToneAt48kHz(channels[1].Samples(), 0, 1000.0, 0.125));
}

TEST(EbuStereoIdent, SoundsAtTheFrequencyThatWasAskedFor) {
    auto channels = model::Generate(Ident::kStereo400, {kSample, 0, 144000});
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples().first(132000), 0, 400.0, 0.125));
    EXPECT_TRUE(IsSilent(channels[0].Samples().last(12000)));
    EXPECT_TRUE(IsToneAt48kHz(channels[1].Samples(), 0, 400.0, 0.125));
}

TEST(EbuStereoIdent, ThatStartsInsideTheGapStartsSilentAndResumesWithTheNextCycle) {
    // 2.9 s is sample 139200: 4800 samples of silence are left.
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 139200 * kSample, 10000});
    EXPECT_TRUE(IsSilent(channels[0].Samples().first(4800)));
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples().subspan(4800), 144000, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[1].Samples(), 139200, 1000.0, 0.125));
}

TEST(EbuStereoIdent, ThatEndsInsideAToneStopsAtItsLastSample) {
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 0, 777});
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples(), 0, 1000.0, 0.125));
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 2));
}

TEST(EbuStereoIdent, ThatEndsInsideTheGapStopsAtItsLastSample) {
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 131990 * kSample, 20});
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples().first(10), 131990, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(channels[0].Samples().last(10)));
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 2));
}

TEST(EbuStereoIdent, LeftIsInPhaseWithRight) {
    // 0.7 s into the first cycle and past the gap into the second: both channels are within the strays of one piece.
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 33600 * kSample, 144000});
    for (std::size_t i = 0; i < 144000; ++i) {
        const bool inGap = i >= 132000 - 33600 && i < 144000 - 33600;
        ASSERT_NEAR(channels[0][i], inGap ? 0.0F : channels[1][i], 0.125 * 3000 * 1.7485e-7) << i;
    }
}

TEST(EbuStereoIdent, InPeakModeHoldsTheLevelWhereItSounds) {
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 0, 144000, true});
    EXPECT_TRUE(model::SameBits(std::vector<float>(132000, 0.125F), channels[0].Samples().first(132000)));
    EXPECT_TRUE(IsSilent(channels[0].Samples().last(12000)));
    EXPECT_TRUE(model::SameBits(std::vector<float>(144000, 0.125F), channels[1].Samples()));
}

TEST(EbuStereoIdent, BeforeTheClipContinuesTheCyclesBackwards) {
    // The quarter second before clip time 0 is the gap of cycle -1.
    auto channels = model::Generate(Ident::kStereo1000, {kSample, -kSecond / 2, 48000});
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples().first(12000), -24000, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(channels[0].Samples().subspan(12000, 12000)));
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples().last(24000), 0, 1000.0, 0.125));
}

TEST(EbuStereoIdent, SoundsForTheSampleThatBeginsBeforeTheGapAndEndsInIt) {
    // 5297297 ticks a sample: 131868 samples end 39204 ticks before 2.75 s, so sample 131868 begins in the tone.
    auto channels = model::Generate(Ident::kStereo1000, {5297297, 0, 132000});
    const auto alone = model::Tone(5297297, 131868LL * 5297297, 1000.0, 0.125, 1);
    EXPECT_EQ(channels[0][131868], alone[0]);
    EXPECT_NE(alone[0], 0.0F);
    EXPECT_TRUE(IsSilent(channels[0].Samples().subspan(131869)));
}

TEST(EbuStereoIdent, WritesTheTwoFrontChannelsOnly) {
    auto channels = model::Generate(Ident::kStereo1000, {kSample, 0, 1000});
    EXPECT_EQ(channels[0].UnwrittenSamples(), 0U);
    EXPECT_EQ(channels[1].UnwrittenSamples(), 0U);
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 2));
}

TEST(EbuStereoIdent, WritesRightAfterLeft) {
    // One buffer for both: what stays is the right channel, without the gap.
    test::GuardedChannels channels(1, 24000);
    test::GuardedChannels both(2, 0);
    both.Pointers()[0] = both.Pointers()[1] = channels[0].Data();
    model::Generate(Ident::kStereo1000, {kSample, 126000 * kSample, 24000}, both);
    EXPECT_TRUE(IsToneAt48kHz(channels[0].Samples(), 126000, 1000.0, 0.125));
}

TEST(EbuStereoIdent, OfNoSamplesOrFewerWritesNothing) {
    test::GuardedChannels channels(model::kBufferCount, 10);
    for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        model::Generate(Ident::kStereo1000, {kSample, 0, count}, channels);
        model::Generate(Ident::kStereo1000, {kSample, 0, count, true}, channels);
    }
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 0));
}

}  // namespace
