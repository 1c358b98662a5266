#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using model::Ident;
using model::IsSilent;
using model::IsToneAt48kHz;
using test::GuardedChannels;

constexpr std::int64_t kSample = model::kTicksPerSampleAt48kHz;
constexpr std::int64_t kCycle = 576000;  // samples at 48 kHz

enum Channel : std::size_t { kL, kR, kLs, kRs, kC, kLfe };

GuardedChannels Generate(std::int64_t firstSample, std::int64_t count, bool peakMode = false) {
    return model::Generate(Ident::kMultichannel, {kSample, firstSample * kSample, count, peakMode});
}

// One whole cycle from clip time 0 of one channel whose burst is the half second from `burst` on.
void ExpectCycle(Channel channel, std::size_t burst) {
    GuardedChannels channels = Generate(0, kCycle);
    const auto samples = channels[channel].Samples();
    EXPECT_TRUE(IsToneAt48kHz(samples.subspan(0, 144000), 0, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(samples.subspan(144000, burst - 144000)));
    // Every burst begins a whole number of cycles after the request, so its phase is that of clip time too.
    EXPECT_TRUE(IsToneAt48kHz(samples.subspan(burst, 24000), 0, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(samples.subspan(burst + 24000, 432000 - (burst + 24000))));
    EXPECT_TRUE(IsToneAt48kHz(samples.subspan(432000, 144000), 432000, 1000.0, 0.125));
}

TEST(EbuMultichannelIdent, LeftSoundsAloneFrom168000To191999) {
    ExpectCycle(kL, 168000);  // 3.5 s
}

TEST(EbuMultichannelIdent, CentreSoundsAloneFrom216000To239999) {
    ExpectCycle(kC, 216000);  // 4.5 s
}

TEST(EbuMultichannelIdent, RightSoundsAloneFrom264000To287999) {
    ExpectCycle(kR, 264000);  // 5.5 s
}

TEST(EbuMultichannelIdent, RightSurroundSoundsAloneFrom312000To335999) {
    ExpectCycle(kRs, 312000);  // 6.5 s
}

TEST(EbuMultichannelIdent, LeftSurroundSoundsAloneFrom360000To383999) {
    ExpectCycle(kLs, 360000);  // 7.5 s
}

TEST(EbuMultichannelIdent, LowFrequencyIsNeverSilent) {
    GuardedChannels channels = Generate(0, 2 * kCycle);
    EXPECT_TRUE(IsToneAt48kHz(channels[kLfe].Samples(), 0, 80.0, 0.125));
}

TEST(EbuMultichannelIdent, RepeatsAfterTwelveSeconds) {
    GuardedChannels first = Generate(0, kCycle);
    GuardedChannels second = Generate(kCycle, kCycle);
    for (const Channel c : {kL, kR, kLs, kRs, kC}) {
        EXPECT_TRUE(model::SameBits(first[c].Samples(), second[c].Samples())) << "channel " << c;
    }
    EXPECT_TRUE(IsToneAt48kHz(second[kLfe].Samples(), 0, 80.0, 0.125));
}

TEST(EbuMultichannelIdent, FullRangeChannelsAreCopiesOfOneAnotherWhereAllSound) {
    GuardedChannels channels = Generate(400000, 300000);  // 8.33 s to 14.58 s
    for (const Channel c : {kR, kLs, kRs, kC}) {
        EXPECT_TRUE(model::SameBits(channels[kL].Samples(), channels[c].Samples())) << "channel " << c;
    }
}

TEST(EbuMultichannelIdent, BurstTakesThePhaseOfTheRequestsStart) {
    // Sample 12 of the clip is a quarter of a cycle in, and so then is the first sample of every burst.
    GuardedChannels channels = Generate(12, 400000);
    EXPECT_TRUE(IsToneAt48kHz(channels[kL].Samples().subspan(168000 - 12, 24000), 12, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kC].Samples().subspan(216000 - 12, 24000), 12, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kR].Samples().subspan(264000 - 12, 24000), 12, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kRs].Samples().subspan(312000 - 12, 24000), 12, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kLs].Samples().subspan(360000 - 12, 24000), 12, 1000.0, 0.125));
    EXPECT_EQ(channels[kL][168000 - 12], 0.125F);
}

TEST(EbuMultichannelIdent, ToneOfAllChannelsKeepsThePhaseOfClipTimeWhereverTheRequestStarts) {
    GuardedChannels channels = Generate(12, kCycle);
    EXPECT_TRUE(IsToneAt48kHz(channels[kL].Samples().first(144000 - 12), 12, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kL].Samples().subspan(432000 - 12, 144000), 432000, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kLfe].Samples(), 12, 80.0, 0.125));
}

TEST(EbuMultichannelIdent, ThatStartsInsideABurstHasThePhaseOfClipTimeThereAndGoesOnWithTheCycle) {
    // 4.75 s, the middle of the centre's burst, and a quarter of a cycle more: sample 228012.
    GuardedChannels channels = Generate(228012, 60000);
    const auto centre = channels[kC].Samples();
    EXPECT_TRUE(IsToneAt48kHz(centre.first(240000 - 228012), 228012, 1000.0, 0.125));
    EXPECT_TRUE(IsSilent(centre.subspan(240000 - 228012)));
    // Right follows at 264000, with the phase of sample 228012.
    EXPECT_TRUE(IsSilent(channels[kR].Samples().first(264000 - 228012)));
    EXPECT_TRUE(IsToneAt48kHz(channels[kR].Samples().subspan(264000 - 228012, 24000), 228012, 1000.0, 0.125));
    for (const Channel c : {kL, kLs, kRs}) {
        EXPECT_TRUE(IsSilent(channels[c].Samples())) << "channel " << c;
    }
}

TEST(EbuMultichannelIdent, InPeakModeHoldsTheLevelWhereItSounds) {
    GuardedChannels channels = Generate(0, kCycle, true);
    const std::vector<float> level(kCycle, 0.125F);
    const auto levels = [&level](std::size_t count) { return std::span(level).first(count); };
    const auto left = channels[kL].Samples();
    EXPECT_TRUE(model::SameBits(levels(144000), left.subspan(0, 144000)));
    EXPECT_TRUE(IsSilent(left.subspan(144000, 24000)));
    EXPECT_TRUE(model::SameBits(levels(24000), left.subspan(168000, 24000)));
    EXPECT_TRUE(IsSilent(left.subspan(192000, 240000)));
    EXPECT_TRUE(model::SameBits(levels(144000), left.subspan(432000)));
    EXPECT_TRUE(model::SameBits(level, channels[kLfe].Samples()));
}

TEST(EbuMultichannelIdent, BeforeTheClipContinuesTheCyclesBackwards) {
    // Cycle -1 begins at sample -576000; its left burst at -408000.
    GuardedChannels channels = Generate(-kCycle, kCycle);
    EXPECT_TRUE(IsSilent(channels[kL].Samples().subspan(144000, 24000)));
    EXPECT_TRUE(IsToneAt48kHz(channels[kL].Samples().subspan(168000, 24000), 0, 1000.0, 0.125));
    EXPECT_TRUE(IsToneAt48kHz(channels[kC].Samples().last(144000), -144000, 1000.0, 0.125));
}

TEST(EbuMultichannelIdent, WritesSixChannelsOnly) {
    GuardedChannels channels = Generate(150000, 300000);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_EQ(channels[c].UnwrittenSamples(), 0U) << "channel " << c;
    }
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 6));
}

TEST(EbuMultichannelIdent, SilencesTheOthersAfterTheBurstIsWritten) {
    // One buffer for left and right: the left burst is written first and then cleared as the right channel.
    GuardedChannels channels(6, 24000);
    channels.Pointers()[kR] = channels.Pointers()[kL];
    model::Generate(Ident::kMultichannel, {kSample, 168000 * kSample, 24000}, channels);
    EXPECT_TRUE(IsSilent(channels[kL].Samples()));
}

TEST(EbuMultichannelIdent, WritesLowFrequencyLast) {
    GuardedChannels channels(6, 48000);
    channels.Pointers()[kLfe] = channels.Pointers()[kL];
    model::Generate(Ident::kMultichannel, {kSample, 120000 * kSample, 48000}, channels);
    EXPECT_TRUE(IsToneAt48kHz(channels[kL].Samples(), 120000, 80.0, 0.125));
}

TEST(EbuMultichannelIdent, OfNoSamplesOrFewerWritesNothing) {
    GuardedChannels channels(model::kBufferCount, 10);
    for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        model::Generate(Ident::kMultichannel, {kSample, 0, count}, channels);
        model::Generate(Ident::kMultichannel, {kSample, 0, count, true}, channels);
    }
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 0));
}

}  // namespace
