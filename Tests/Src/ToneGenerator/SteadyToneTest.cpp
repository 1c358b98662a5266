#include "Tests/Src/ToneGenerator/GeneratorRun.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>

namespace {

using oracle::kInt64Max;
using oracle::kInt64Min;
using oracle::kTicksAt48kHz;
using test::AllAre;
using test::GuardedBuffer;
using test::IsTextbookSine;
using test::SameSamples;
using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

const FrameRate k48kHz{kTicksAt48kHz};

static_assert(std::is_trivially_copyable_v<ToneGenerator>);
static_assert(sizeof(ToneGenerator) == sizeof(FrameRate));

GuardedBuffer Tone(const FrameRate& rate, std::int64_t startTicks, float frequency, float amplitude, std::size_t count,
                   bool peakMode = false) {
    GuardedBuffer buffer(count);
    ToneGenerator(rate, 1).GenerateTone(TickTime(startTicks), frequency, amplitude, buffer.Data(),
                                        static_cast<long long>(count), peakMode);
    EXPECT_TRUE(buffer.GuardsIntact());
    return buffer;
}

TEST(SteadyTone, StartsAtExactlyZeroWithTheClip) {
    GuardedBuffer buffer = Tone(k48kHz, 0, 1000.0F, 0.25F, 48);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(buffer[0]), 0U);
    EXPECT_EQ(buffer[12], 0.25F);  // 12 of the 48 samples of a cycle: the top
    EXPECT_NEAR(buffer[24], 0.0, 1e-7);
    EXPECT_EQ(buffer[36], -0.25F);
}

TEST(SteadyTone, IsATextbookSineOfTheAbsoluteSampleIndex) {
    for (const std::int64_t first : {0, 48012, -12}) {
        GuardedBuffer buffer = Tone(k48kHz, first * kTicksAt48kHz, 1000.0F, 0.25F, 48000);
        EXPECT_TRUE(IsTextbookSine(buffer.Samples(), first, 1000.0, 0.25)) << "from sample " << first;
    }
}

TEST(SteadyTone, IsTheDefiningLoopToTheBit) {
    std::mt19937_64 random(20240311);
    std::uniform_int_distribution<std::int64_t> anyTime(-1'000'000'000'000'000, 10'000'000'000'000'000);
    std::uniform_real_distribution<float> anyFrequency(-100.0F, 24000.0F);
    std::uniform_real_distribution<float> anyAmplitude(-1.0F, 2.0F);
    for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 32000.0F, 47952.0F, 11025.0F, 100.0F, 0.37F, -48000.0F}) {
        const FrameRate rate = zelmediatypes::FrameRateFromHz(rateHz);
        for (int i = 0; i < 20; ++i) {
            const std::int64_t time = i == 0 ? -1 : anyTime(random);  // most lie inside a sample
            const float frequency = anyFrequency(random);
            const float amplitude = anyAmplitude(random);
            const auto expected =
                oracle::Tone(time, rate.Ticks(), static_cast<double>(frequency), static_cast<double>(amplitude), 1500);
            GuardedBuffer got = Tone(rate, time, frequency, amplitude, 1500);
            ASSERT_TRUE(SameSamples(got.Samples(), expected))
                << rateHz << " Hz, " << frequency << " Hz at tick " << time;
        }
    }
}

TEST(SteadyTone, CountsWholeCyclesWithASinglePrecisionTwoPi) {
    // After a million cycles in one piece, that 2 pi (too large by 1.7485e-7) has moved the phase by 0.17 rad.
    constexpr std::size_t kCount = 4'000'001;
    GuardedBuffer buffer = Tone(k48kHz, 0, 12000.0F, 1.0F, kCount);
    EXPECT_NEAR(buffer[4'000'000], std::sin(0.174846), 1e-3);
    GuardedBuffer afresh = Tone(k48kHz, 4'000'000 * kTicksAt48kHz, 12000.0F, 1.0F, 1);
    EXPECT_EQ(afresh[0], 0.0F);
}

TEST(SteadyTone, JoinsWithoutAClickWhereverTheRequestIsCut) {
    // 2000 samples hold 41.7 cycles. Neighbouring samples differ by up to 0.03.
    GuardedBuffer whole = Tone(k48kHz, 0, 1000.0F, 0.25F, 2000);
    for (const std::size_t cut : {1U, 24U, 999U, 1000U, 1999U}) {
        GuardedBuffer before = Tone(k48kHz, 0, 1000.0F, 0.25F, cut);
        EXPECT_TRUE(SameSamples(before.Samples(), whole.Samples().first(cut))) << cut;
        GuardedBuffer after = Tone(k48kHz, static_cast<std::int64_t>(cut) * kTicksAt48kHz, 1000.0F, 0.25F, 2000 - cut);
        for (std::size_t i = cut; i < 2000; ++i) {
            ASSERT_NEAR(whole[i], after[i - cut], oracle::Stray(41.7, 0.25)) << "sample " << i << ", cut at " << cut;
        }
    }
}

TEST(SteadyTone, OfAnyAmplitudeInPeakModeIsThatAmplitudeInEverySample) {
    for (const float amplitude : {0.25F, -0.1F, 1e-40F, 7.0F}) {
        GuardedBuffer buffer = Tone(k48kHz, 99, 1000.0F, amplitude, 1001, true);
        EXPECT_TRUE(AllAre(buffer.Samples(), amplitude));
    }
}

TEST(SteadyTone, OfNoRateIsNaNButItsPeakIsNot) {
    GuardedBuffer waveform = Tone(zelmediatypes::kNoFrameRate, 0, 1000.0F, 0.25F, 10);
    EXPECT_TRUE(AllAre(waveform.Samples(), std::numeric_limits<float>::quiet_NaN()));
    GuardedBuffer peak = Tone(zelmediatypes::kNoFrameRate, 0, 1000.0F, 0.25F, 10, true);
    EXPECT_TRUE(AllAre(peak.Samples(), 0.25F));
}

TEST(SteadyTone, OfSamplesOfNoLengthIsZero) {
    GuardedBuffer buffer = Tone(FrameRate(0), 254016000000, 1000.0F, 0.25F, 10);
    EXPECT_TRUE(AllAre(buffer.Samples(), 0.0F));
}

TEST(SteadyTone, OfNoSamplesOrFewerWritesNothing) {
    GuardedBuffer buffer(4);
    const ToneGenerator generator(k48kHz, 1);
    for (const long long count : {0LL, -1LL, -4294967295LL, std::numeric_limits<long long>::min()}) {
        for (const bool peakMode : {false, true}) {
            generator.GenerateTone(TickTime(0), 1000.0F, 0.25F, buffer.Data(), count, peakMode);
        }
    }
    EXPECT_TRUE(test::NeverWritten(buffer));
    EXPECT_TRUE(buffer.GuardsIntact());
}

TEST(SteadyTone, OfExtremeTimesRatesAndFrequenciesWritesWhatWasAskedForOnly) {
    for (const std::int64_t sampleTicks :
         {kInt64Min, kInt64Min + 1, std::int64_t{-1}, std::int64_t{1}, kInt64Max - 1}) {
        for (const std::int64_t time : {kInt64Min, std::int64_t{-1}, std::int64_t{1}, kInt64Max}) {
            for (const float frequency : {0.0F, 1e30F, -3e38F, std::numeric_limits<float>::infinity()}) {
                GuardedBuffer buffer = Tone(FrameRate(sampleTicks), time, frequency, 0.25F, 20);
                EXPECT_EQ(buffer.UnwrittenSamples(), 0U);
            }
        }
    }
}

}  // namespace
