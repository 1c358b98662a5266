#include "Src/ToneGenerator/ToneGenerator.h"
#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

using model::Ident;
using model::IsSilent;
using model::IsToneAt48kHz;
using test::GuardedChannels;

constexpr std::int64_t kSample = model::kTicksPerSampleAt48kHz;
constexpr std::int64_t kCycle = 643200;  // samples at 48 kHz
constexpr std::int64_t kSlot = 4800;

enum Channel : std::size_t { kL, kR, kLs, kRs, kC, kLfe };

GuardedChannels Generate(std::int64_t firstSample, std::int64_t count, bool peakMode = false) {
    return model::Generate(Ident::kBlits, {kSample, firstSample * kSample, count, peakMode});
}

// Samples [from, to) of the cycle sound in one channel, or in none.
struct Row {
    std::size_t from;
    std::size_t to;
    double frequencyHz;
    double level;
};

// One channel through one cycle of 48 kHz from clip time 0: it sounds in `rows` and is silent between them.
void ExpectCycle(Channel channel, const std::vector<Row>& rows) {
    GuardedChannels channels = Generate(0, kCycle);
    const auto samples = channels[channel].Samples();
    std::size_t silentFrom = 0;
    for (const Row& row : rows) {
        EXPECT_TRUE(IsSilent(samples.subspan(silentFrom, row.from - silentFrom))) << "before " << row.from;
        EXPECT_TRUE(IsToneAt48kHz(samples.subspan(row.from, row.to - row.from), static_cast<std::int64_t>(row.from),
                                  row.frequencyHz, row.level))
            << "from " << row.from;
        silentFrom = row.to;
    }
    EXPECT_TRUE(IsSilent(samples.subspan(silentFrom))) << "from " << silentFrom;
}

TEST(BlitsIdent, LeftIsNamedAt880HzAndBrokenFourTimesAt1000Hz) {
    ExpectCycle(kL, {
                        {0, 28800, 880.0, 0.125},          //  0.0 s
                        {230400, 278400, 1000.0, 0.125},   //  4.8 s
                        {292800, 307200, 1000.0, 0.125},   //  6.1 s
                        {321600, 336000, 1000.0, 0.125},   //  6.7 s
                        {350400, 364800, 1000.0, 0.125},   //  7.3 s
                        {379200, 475200, 1000.0, 0.125},   //  7.9 s
                        {489600, 633600, 2000.0, 0.0625},  // 10.2 s
                    });
}

TEST(BlitsIdent, RightIsNamedAt880HzAndUnbrokenAt1000Hz) {
    ExpectCycle(kR, {
                        {38400, 67200, 880.0, 0.125},      //  0.8 s
                        {230400, 475200, 1000.0, 0.125},   //  4.8 s
                        {489600, 633600, 2000.0, 0.0625},  // 10.2 s
                    });
}

TEST(BlitsIdent, CentreIsNamedAt1320Hz) {
    ExpectCycle(kC, {
                        {76800, 105600, 1320.0, 0.125},    //  1.6 s
                        {489600, 633600, 2000.0, 0.0625},  // 10.2 s
                    });
}

TEST(BlitsIdent, LowFrequencyIsNamedAt88AndAHalfHz) {
    ExpectCycle(kLfe, {
                          {115200, 144000, 88.5, 0.125},     //  2.4 s
                          {489600, 633600, 2000.0, 0.0625},  // 10.2 s
                      });
}

TEST(BlitsIdent, LeftSurroundIsNamedAt660Hz) {
    ExpectCycle(kLs, {
                         {153600, 182400, 660.0, 0.125},    //  3.2 s
                         {489600, 633600, 2000.0, 0.0625},  // 10.2 s
                     });
}

TEST(BlitsIdent, RightSurroundIsNamedAt660Hz) {
    ExpectCycle(kRs, {
                         {192000, 220800, 660.0, 0.125},    //  4.0 s
                         {489600, 633600, 2000.0, 0.0625},  // 10.2 s
                     });
}

TEST(BlitsIdent, RepeatsAfter643200Samples) {
    GuardedChannels channels = Generate(kCycle - 10, 20);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_TRUE(IsSilent(channels[c].Samples().first(10))) << "channel " << c;
    }
    EXPECT_TRUE(IsToneAt48kHz(channels[kL].Samples().last(10), kCycle, 880.0, 0.125));
    for (const Channel c : {kR, kLs, kRs, kC, kLfe}) {
        EXPECT_TRUE(IsSilent(channels[c].Samples().last(10))) << "channel " << c;
    }
}

TEST(BlitsIdent, AllSixChannelsAreCopiesOfOneAnotherWhereTheySoundTogether) {
    GuardedChannels channels = Generate(489600, 144000);
    for (const Channel c : {kR, kLs, kRs, kC, kLfe}) {
        EXPECT_TRUE(model::SameBits(channels[kL].Samples(), channels[c].Samples())) << "channel " << c;
    }
}

TEST(BlitsIdent, BurstTakesThePhaseOfClipTimeWhereverTheRequestStarts) {
    // A request from sample 12 on holds the same bursts, slot for slot, as one from 0 on.
    GuardedChannels whole = Generate(0, kCycle);
    GuardedChannels late = Generate(12, kCycle - 12);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_TRUE(model::SameBits(whole[c].Samples().subspan(kSlot), late[c].Samples().subspan(kSlot - 12)))
            << "channel " << c;
    }
}

TEST(BlitsIdent, EverySlotStartsItsPhaseAfresh) {
    // Slot 3 of the left burst, computed by itself, is what the request from 0 on holds there.
    GuardedChannels channels = Generate(0, 4 * kSlot);
    const auto slot = model::Tone(kSample, 3 * kSlot * kSample, 880.0, 0.125, kSlot);
    EXPECT_TRUE(model::SameBits(slot, channels[kL].Samples().last(kSlot)));
}

TEST(BlitsIdent, ThatStartsInsideASlotCutsItsFirstPieceAtTheSlotsEnd) {
    GuardedChannels channels = Generate(1000, kSlot);
    const auto rest = model::Tone(kSample, 1000 * kSample, 880.0, 0.125, kSlot - 1000);
    const auto next = model::Tone(kSample, kSlot * kSample, 880.0, 0.125, 1000);
    EXPECT_TRUE(model::SameBits(rest, channels[kL].Samples().first(kSlot - 1000)));
    EXPECT_TRUE(model::SameBits(next, channels[kL].Samples().last(1000)));
}

TEST(BlitsIdent, RightStaysInPhaseAsLeftComesAndGoes) {
    // One request across all four breaks; a step of 1000 Hz between neighbours is at most 0.125 * 2 pi / 48.
    GuardedChannels channels = Generate(230400, 244800);
    for (std::size_t i = 1; i < 244800; ++i) {
        ASSERT_LE(std::abs(channels[kR][i] - channels[kR][i - 1]), 0.01637F) << i;
    }
    EXPECT_TRUE(IsToneAt48kHz(channels[kR].Samples(), 230400, 1000.0, 0.125));
}

TEST(BlitsIdent, InPeakModeHoldsTheLevelOfEachTone) {
    GuardedChannels channels = Generate(0, kCycle, true);
    const std::vector<float> burst(28800, 0.125F);
    const std::vector<float> closing(144000, 0.0625F);
    EXPECT_TRUE(model::SameBits(burst, channels[kL].Samples().first(28800)));
    EXPECT_TRUE(IsSilent(channels[kL].Samples().subspan(28800, 201600)));
    EXPECT_TRUE(model::SameBits(burst, channels[kLfe].Samples().subspan(115200, 28800)));
    EXPECT_TRUE(model::SameBits(burst, channels[kR].Samples().subspan(278400, 28800)));
    EXPECT_TRUE(IsSilent(channels[kL].Samples().subspan(278400, 14400)));
    EXPECT_TRUE(IsSilent(channels[kR].Samples().subspan(475200, 14400)));
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_TRUE(model::SameBits(closing, channels[c].Samples().subspan(489600, 144000))) << "channel " << c;
        EXPECT_TRUE(IsSilent(channels[c].Samples().last(9600))) << "channel " << c;
    }
}

TEST(BlitsIdent, APieceShorterThanASampleIsOneSample) {
    // 5297297 ticks a sample: sample 28771 begins 1068013 ticks before the burst's end at 0.6 s.
    auto channels = model::Generate(Ident::kBlits, {5297297, 0, 29000});
    const auto alone = model::Tone(5297297, 28771LL * 5297297, 880.0, 0.125, 1);
    EXPECT_EQ(channels[kL][28771], alone[0]);
    EXPECT_NE(alone[0], 0.0F);
    EXPECT_TRUE(IsSilent(channels[kL].Samples().subspan(28772)));
}

TEST(BlitsIdent, OfSamplesLongerThanASlotTakesEachSamplesSlot) {
    // Four peaks a second: 0.0, 0.25, 0.5 s left; 0.75 s silence; 1.0, 1.25 s right; 1.5 s silence; 1.75 s centre.
    auto channels = model::Generate(Ident::kBlits, {63504000000, 0, 8, true});
    const std::vector<float> left = {0.125F, 0.125F, 0.125F, 0, 0, 0, 0, 0};
    const std::vector<float> right = {0, 0, 0, 0, 0.125F, 0.125F, 0, 0};
    const std::vector<float> centre = {0, 0, 0, 0, 0, 0, 0, 0.125F};
    EXPECT_TRUE(model::SameBits(left, channels[kL].Samples()));
    EXPECT_TRUE(model::SameBits(right, channels[kR].Samples()));
    EXPECT_TRUE(model::SameBits(centre, channels[kC].Samples()));
}

TEST(BlitsIdent, BeforeTheClipContinuesTheCyclesBackwards) {
    // Cycle -1 ends with 0.2 s of silence, 9600 samples, after the closing tone.
    GuardedChannels channels = Generate(-20000, 20000);
    EXPECT_TRUE(IsToneAt48kHz(channels[kLfe].Samples().first(10400), -20000, 2000.0, 0.0625));
    EXPECT_TRUE(IsSilent(channels[kLfe].Samples().last(9600)));
}

TEST(BlitsIdent, WritesSixChannelsOnly) {
    GuardedChannels channels = Generate(0, kCycle);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_EQ(channels[c].UnwrittenSamples(), 0U) << "channel " << c;
    }
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 6));
}

TEST(BlitsIdent, SilencesTheOthersAfterTheSoundingChannelsAreWritten) {
    // One buffer for two channels: what sounds in the one is cleared as the other.
    GuardedChannels burst(6, kSlot);
    burst.Pointers()[kR] = burst.Pointers()[kL];
    model::Generate(Ident::kBlits, {kSample, 0, kSlot}, burst);
    EXPECT_TRUE(IsSilent(burst[kL].Samples()));

    GuardedChannels pair(6, kSlot);
    pair.Pointers()[kLs] = pair.Pointers()[kL];
    model::Generate(Ident::kBlits, {kSample, 230400 * kSample, kSlot}, pair);
    EXPECT_TRUE(IsSilent(pair[kL].Samples()));
    EXPECT_TRUE(IsToneAt48kHz(pair[kR].Samples(), 230400, 1000.0, 0.125));
}

TEST(BlitsIdent, OfSilenceIntoNoBuffersDoesNothing) {
    const ToneGenerator generator(zelmediatypes::FrameRate(kSample), 6);
    const zelmediatypes::TickTime gap(28800 * kSample);  // 0.6 to 0.8 s
    EXPECT_EXIT((generator.GenerateBLITS(gap, nullptr, 6, 9600, false), std::exit(0)), testing::ExitedWithCode(0), "");
}

TEST(BlitsIdent, OfNoSamplesOrFewerWritesNothing) {
    GuardedChannels channels(model::kBufferCount, 10);
    for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        model::Generate(Ident::kBlits, {kSample, 0, count}, channels);
        model::Generate(Ident::kBlits, {kSample, 0, count, true}, channels);
    }
    EXPECT_TRUE(model::NothingElseIsWritten(channels, 0));
}

}  // namespace
