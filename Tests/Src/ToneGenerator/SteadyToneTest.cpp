#include "Src/ToneGenerator/ToneGenerator.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>

namespace {

using test::GuardedBuffer;
using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

const FrameRate k48kHz{5292000};

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

TEST(SteadyTone, ComesBackToItsStartEachSecond) {
    // 48000 samples of 997 Hz are 997 cycles but for the last bit: a 2 pi that is 1.7485e-7 too large.
    GuardedBuffer first = Tone(k48kHz, 0, 997.0F, 1.0F, 50);
    for (const std::int64_t second : {1, 5, 3600, -1, -7}) {
        GuardedBuffer later = Tone(k48kHz, second * 254016000000, 997.0F, 1.0F, 50);
        for (std::size_t i = 0; i < 50; ++i) {
            ASSERT_NEAR(later[i], first[i], 3e-7) << "sample " << i << " of second " << second;
        }
    }
}

TEST(SteadyTone, IsATextbookSine) {
    GuardedBuffer buffer = Tone(k48kHz, 0, 1000.0F, 0.25F, 48000);
    EXPECT_TRUE(model::IsToneAt48kHz(buffer.Samples(), 0, 1000.0, 0.25));
}

TEST(SteadyTone, TakesItsPhaseFromTheAbsoluteSampleIndex) {
    // Sample 48012 of the clip is a quarter of a cycle past one second.
    GuardedBuffer buffer = Tone(k48kHz, 48012 * k48kHz.Ticks(), 1000.0F, 0.25F, 100);
    EXPECT_EQ(buffer[0], 0.25F);
    EXPECT_TRUE(model::IsToneAt48kHz(buffer.Samples(), 48012, 1000.0, 0.25));
}

TEST(SteadyTone, OfATimeInsideASampleHasThePhaseOfThatSample) {
    GuardedBuffer onSample = Tone(k48kHz, 7 * k48kHz.Ticks(), 1000.0F, 0.25F, 50);
    GuardedBuffer late = Tone(k48kHz, 8 * k48kHz.Ticks() - 1, 1000.0F, 0.25F, 50);
    EXPECT_TRUE(model::SameBits(onSample.Samples(), late.Samples()));
}

TEST(SteadyTone, BeforeTheClipContinuesTheSineBackwards) {
    // Sample -12 is a quarter of a cycle before zero: the bottom.
    GuardedBuffer buffer = Tone(k48kHz, -12 * k48kHz.Ticks(), 1000.0F, 0.25F, 100);
    EXPECT_EQ(buffer[0], -0.25F);
    EXPECT_TRUE(model::IsToneAt48kHz(buffer.Samples(), -12, 1000.0, 0.25));
}

TEST(SteadyTone, OfATickBeforeTheClipHasThePhaseOfTheSampleBefore) {
    GuardedBuffer buffer = Tone(k48kHz, -1, 1000.0F, 0.25F, 10);
    EXPECT_TRUE(model::SameBits(model::Tone(5292000, -5292000, 1000.0, 0.25F, 10), buffer.Samples()));
}

TEST(SteadyTone, IsTheDefiningLoopToTheBit) {
    std::mt19937_64 random(20240311);
    std::uniform_int_distribution<std::int64_t> anyTime(-1'000'000'000'000'000, 10'000'000'000'000'000);
    std::uniform_real_distribution<float> anyFrequency(-100.0F, 24000.0F);
    std::uniform_real_distribution<float> anyAmplitude(-1.0F, 2.0F);
    for (const float rateHz : {48000.0F, 44100.0F, 96000.0F, 32000.0F, 47952.0F, 11025.0F, 100.0F, 0.37F, -48000.0F}) {
        const FrameRate rate = zelmediatypes::FrameRateFromHz(rateHz);
        for (int i = 0; i < 20; ++i) {
            const std::int64_t time = anyTime(random);
            const float frequency = anyFrequency(random);
            const float amplitude = anyAmplitude(random);
            const auto expected =
                model::Tone(rate.Ticks(), time, static_cast<double>(frequency), static_cast<double>(amplitude), 1500);
            GuardedBuffer got = Tone(rate, time, frequency, amplitude, 1500);
            ASSERT_TRUE(model::SameBits(expected, got.Samples()))
                << rateHz << " Hz, " << frequency << " Hz at tick " << time;
        }
    }
}

TEST(SteadyTone, CountsWholeCyclesWithASinglePrecisionTwoPi) {
    // After a million cycles in one piece, that 2 pi (too large by 1.7485e-7) has moved the phase by 0.17 rad.
    constexpr std::size_t kCount = 4'000'001;
    GuardedBuffer buffer = Tone(k48kHz, 0, 12000.0F, 1.0F, kCount);
    EXPECT_NEAR(buffer[4'000'000], std::sin(0.174846), 1e-3);
    GuardedBuffer afresh = Tone(k48kHz, 4'000'000 * k48kHz.Ticks(), 12000.0F, 1.0F, 1);
    EXPECT_EQ(afresh[0], 0.0F);
}

TEST(SteadyTone, JoinsWithoutAClickWhereverTheRequestIsCut) {
    // In 2000 samples of 1000 Hz are 41.7 cycles; the second piece starts without the strays of the first's
    // whole cycles, 1.7485e-7 radians each. Neighbouring samples differ by up to 0.03.
    constexpr double kBound = 0.25 * 41.7 * 1.7485e-7 + 0.25 * 1e-7;
    GuardedBuffer whole = Tone(k48kHz, 0, 1000.0F, 0.25F, 2000);
    for (const std::size_t cut : {1U, 24U, 999U, 1000U, 1999U}) {
        GuardedBuffer before = Tone(k48kHz, 0, 1000.0F, 0.25F, cut);
        EXPECT_TRUE(model::SameBits(whole.Samples().first(cut), before.Samples())) << cut;
        GuardedBuffer after = Tone(k48kHz, static_cast<std::int64_t>(cut) * 5292000, 1000.0F, 0.25F, 2000 - cut);
        for (std::size_t i = cut; i < 2000; ++i) {
            ASSERT_NEAR(whole[i], after[i - cut], kBound) << "sample " << i << ", cut at " << cut;
        }
    }
}

TEST(SteadyTone, IsTheSameEachTime) {
    GuardedBuffer once = Tone(k48kHz, 123456789, 440.0F, 0.5F, 777);
    GuardedBuffer again = Tone(k48kHz, 123456789, 440.0F, 0.5F, 777);
    EXPECT_TRUE(model::SameBits(once.Samples(), again.Samples()));
}

TEST(SteadyTone, OfAnyAmplitudeInPeakModeIsThatAmplitudeInEverySample) {
    for (const float amplitude : {0.25F, -0.1F, 1e-40F, 7.0F}) {
        GuardedBuffer buffer = Tone(k48kHz, 99, 1000.0F, amplitude, 1001, true);
        for (const float sample : buffer.Samples()) {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(sample), std::bit_cast<std::uint32_t>(amplitude));
        }
    }
}

TEST(SteadyTone, OfNoRateIsNotANumberButItsPeakIs) {
    GuardedBuffer waveform = Tone(zelmediatypes::kNoFrameRate, 0, 1000.0F, 0.25F, 10);
    GuardedBuffer peak = Tone(zelmediatypes::kNoFrameRate, 0, 1000.0F, 0.25F, 10, true);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_TRUE(std::isnan(waveform[i]) && !test::IsUnwritten(waveform[i]));
        EXPECT_EQ(peak[i], 0.25F);
    }
}

TEST(SteadyTone, OfSamplesOfNoLengthIsZero) {
    GuardedBuffer buffer = Tone(FrameRate(0), 254016000000, 1000.0F, 0.25F, 10);
    EXPECT_TRUE(model::IsSilent(buffer.Samples()));
}

TEST(SteadyTone, OfNoSamplesOrFewerWritesNothing) {
    GuardedBuffer buffer(4);
    const ToneGenerator generator(k48kHz, 1);
    for (const long long count : {0LL, -1LL, -4294967295LL, std::numeric_limits<long long>::min()}) {
        for (const bool peakMode : {false, true}) {
            generator.GenerateTone(TickTime(0), 1000.0F, 0.25F, buffer.Data(), count, peakMode);
        }
    }
    EXPECT_EQ(buffer.UnwrittenSamples(), 4U);
    EXPECT_TRUE(buffer.GuardsIntact());
}

TEST(SteadyTone, OfExtremeTimesRatesAndFrequenciesWritesWhatWasAskedForOnly) {
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t sampleTicks : {kMin, kMin + 1, std::int64_t{-1}, std::int64_t{1}, kMax - 1}) {
        for (const std::int64_t time : {kMin, std::int64_t{-1}, std::int64_t{1}, kMax}) {
            for (const float frequency : {0.0F, 1e30F, -3e38F, std::numeric_limits<float>::infinity()}) {
                GuardedBuffer buffer = Tone(FrameRate(sampleTicks), time, frequency, 0.25F, 20);
                EXPECT_EQ(buffer.UnwrittenSamples(), 0U);
            }
        }
    }
}

}  // namespace
