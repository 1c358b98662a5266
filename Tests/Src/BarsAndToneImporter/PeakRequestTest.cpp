#include "Tests/Src/BarsAndToneImporter/SoundRequests.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

using test::Draw;
using test::DrawsTheAnswer;
using test::Peaks;

TEST(PeakRequest, PlacesItsFirstValueAtTheRequestedSample) {
    // Sample 12 of 1000 Hz at 48000 Hz is the crest; a peak lasts 12 samples at 4000 Hz.
    Peaks peaks(4);
    ASSERT_EQ(Draw({.numChannels = 1}, 12, 4000.0F, 4, peaks), 0);
    EXPECT_NEAR(peaks.maxima[0][0], 0.25, 1e-7);
    EXPECT_NEAR(peaks.maxima[0][1], 0.0, 1e-7);
    EXPECT_NEAR(peaks.maxima[0][2], -0.25, 1e-7);
}

TEST(PeakRequest, DrawsAToneAboveOrAtThePeakRateAsABandAndBelowItAsOneLine) {
    struct Case {
        BarsAndToneInfo settings;
        float peakRateHz;
        bool waveform;
    };
    const Case kCases[] = {
        {{}, 100.0F, false},
        {{}, 999.0F, false},
        {{}, 1000.0F, false},
        {{}, 1001.0F, true},
        {{.frequency = std::nextafter(1000.0F, 0.0F)}, 1000.0F, true},
        {{.frequency = std::nextafter(1000.0F, 2000.0F)}, 1000.0F, false},
        {{.frequency = 20.0F}, 100.0F, true},
        {{.frequency = 48000.0F}, 48000.0F, false},
        // 47952 Hz has 5297297.297 ticks, cut to 5297297: a rate of 47952.0027 Hz, above the tone.
        {{.frequency = 47952.0F}, 47952.0F, true},
        // A rate of zero is above no frequency but a negative one.
        {{.frequency = 1e30F}, 0.0F, false},
        {{.frequency = 0.0F}, -0.0F, false},
        {{.frequency = -1.0F}, 0.0F, true},
        {{.frequency = std::nanf("")}, 2000.0F, false},
        {{.frequency = std::numeric_limits<float>::infinity()}, 2000.0F, false},
        {{.sampleRate = 0.0F}, 100.0F, false},
        {{.sampleRate = 0.0F}, 2000.0F, true},
    };
    for (const auto& [settings, peakRateHz, waveform] : kCases) {
        EXPECT_EQ(oracle::IsDrawnAsWaveform(settings, peakRateHz), waveform) << settings.frequency << " Hz";
        EXPECT_TRUE(DrawsTheAnswer(settings, 100, peakRateHz, 200));
    }
}

TEST(PeakRequest, DrawsTheWaveformAtEveryPosition) {
    for (const std::int64_t position :
         {std::int64_t{1}, std::int64_t{-1}, std::int64_t{-48000}, std::int64_t{1} << 31, std::int64_t{1} << 40,
          oracle::kInt64Max / 5292000 + 1, oracle::kInt64Max, oracle::kInt64Min}) {
        EXPECT_TRUE(DrawsTheAnswer({.numChannels = 1, .frequency = 440.0F}, position, 3000.0F, 100));
        EXPECT_TRUE(DrawsTheAnswer({.sampleRate = 44100.0F, .numChannels = 1}, position, 3000.0F, 100));
    }
}

TEST(PeakRequest, WritesAsManyValuesAsAskedFor) {
    for (const std::int32_t count : {0, 1, 2, 3, 4, 5, 15, 16, 17, 1601}) {
        for (const BarsAndToneInfo& settings : test::EverySound()) {
            EXPECT_TRUE(DrawsTheAnswer(settings, 5, 100.0F, count));
            EXPECT_TRUE(DrawsTheAnswer(settings, 5, 2000.0F, count));
        }
    }
}

TEST(PeakRequest, ForFewerThanNoValuesWritesNothing) {
    for (const std::int32_t count : {-1, -100, std::numeric_limits<std::int32_t>::min()}) {
        for (const BarsAndToneInfo& settings : test::EverySound()) {
            for (const float peakRateHz : {100.0F, 2000.0F}) {
                Peaks peaks(32);
                EXPECT_EQ(Draw(settings, 100, peakRateHz, count, peaks), 0);
                EXPECT_TRUE(Hold(oracle::Answer{}, peaks.maxima));
                EXPECT_TRUE(Hold(oracle::Answer{}, peaks.minima));
            }
        }
    }
}

TEST(PeakRequest, DrawsTheSameOnAllChannelsThatAClipHas) {
    for (const std::uint32_t numChannels : {0U, 1U, 2U, 6U, 8U, 0x80000000U, 0xFFFFFFFFU}) {
        for (const float peakRateHz : {100.0F, 2000.0F}) {
            EXPECT_TRUE(DrawsTheAnswer({.numChannels = numChannels, .amplitude = -0.5F}, -7, peakRateHz, 32));
        }
    }
}

TEST(PeakRequest, DrawsASteadyToneForEveryIdentFlagButOne) {
    for (const std::uint32_t flag : {0U, 2U, 3U, 0x101U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(DrawsTheAnswer({.numChannels = 2, .identifyChannels = flag, .identifierFormat = EBUStereo400}, 0,
                                   100.0F, 50));
    }
}

TEST(PeakRequest, DrawsIdentsAsBandsAtEveryPeakRateAndMirrorsTheClipsChannels) {
    for (const std::uint32_t numChannels : {0U, 1U, 2U, 6U}) {
        for (const BarsAndToneInfo& settings : test::EveryIdent(48000.0F, numChannels)) {
            for (const float peakRateHz : {100.0F, 48000.0F, 0.5F}) {
                EXPECT_TRUE(DrawsTheAnswer(settings, 108000, peakRateHz, 100));
                EXPECT_TRUE(DrawsTheAnswer(settings, -1000, peakRateHz, 100));
            }
        }
    }
}

TEST(PeakRequest, OfAnUnknownIdentMirrorsWhateverTheMaximaHold) {
    for (const std::uint32_t format : {4U, 7U, 0xFFFFFFFFU}) {
        Peaks peaks(5);
        const std::vector<float> held = {1.0F, -0.5F, 0.0F, -0.0F, std::numeric_limits<float>::infinity()};
        std::ranges::copy(held, peaks.maxima[1].Data());
        const BarsAndToneInfo settings{
            .numChannels = 2, .identifyChannels = 1, .identifierFormat = static_cast<IdentifierFormat>(format)};
        EXPECT_EQ(Draw(settings, 0, 100.0F, 5, peaks), 0);
        EXPECT_TRUE(test::SameSamples(peaks.maxima[1].Samples(), held));
        const std::vector<float> mirrored = {-1.0F, 0.5F, -0.0F, 0.0F, -std::numeric_limits<float>::infinity()};
        EXPECT_TRUE(test::SameSamples(peaks.minima[1].Samples(), mirrored));
        EXPECT_TRUE(NeverWritten(peaks.minima[2]));
    }
}

}  // namespace
