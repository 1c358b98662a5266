#include "Tests/Src/BarsAndToneImporter/AudioRequests.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace {

using test::AllAre;
using test::Draw;
using test::Ident;
using test::Peaks;
using test::SameSamples;

// The tone as it is drawn: stepped by the peak rate from the clip time of sample `position`.
void ExpectWaveform(const BarsAndToneInfo& settings, std::int64_t position, float peakRateHz, std::int32_t count) {
    SCOPED_TRACE(testing::Message() << settings.frequency << " Hz, peaks at " << peakRateHz << " Hz from sample "
                                    << position);
    const auto size = static_cast<std::size_t>(count);
    Peaks peaks(settings.numChannels, size);
    ASSERT_EQ(Draw(settings, position, peakRateHz, count, peaks), 0);
    const auto expected =
        test::ReferenceTone(test::TimeOfSample(test::TicksPerSample(settings.sampleRate), position),
                            test::TicksPerSample(peakRateHz), settings.frequency, settings.amplitude, size);
    for (std::size_t c = 0; c < settings.numChannels; ++c) {
        EXPECT_TRUE(SameSamples(peaks.maxima[c].Samples(), expected)) << "channel " << c;
        EXPECT_TRUE(SameSamples(peaks.minima[c].Samples(), expected)) << "channel " << c;
    }
    EXPECT_TRUE(peaks.GuardsIntact());
}

void ExpectBand(const BarsAndToneInfo& settings, std::int64_t position, float peakRateHz, std::int32_t count) {
    SCOPED_TRACE(testing::Message() << settings.frequency << " Hz, peaks at " << peakRateHz << " Hz from sample "
                                    << position);
    Peaks peaks(settings.numChannels, static_cast<std::size_t>(count));
    ASSERT_EQ(Draw(settings, position, peakRateHz, count, peaks), 0);
    for (std::size_t c = 0; c < settings.numChannels; ++c) {
        EXPECT_TRUE(AllAre(peaks.maxima[c].Samples(), settings.amplitude)) << "channel " << c;
        EXPECT_TRUE(AllAre(peaks.minima[c].Samples(), -settings.amplitude)) << "channel " << c;
    }
    EXPECT_TRUE(peaks.GuardsIntact());
}

TEST(PeakRequest, WithoutSettingsIsRefusedAndWritesNothing) {
    Peaks peaks(6, 50);
    for (const test::Placement& placement : test::kPlacements) {
        EXPECT_EQ(test::Send(test::PeakRequest{.position = 0,
                                               .peakRate = 100.0F,
                                               .count = 50,
                                               .maxima = peaks.maxima.Pointers(),
                                               .minima = peaks.minima.Pointers(),
                                               .privateData = nullptr,
                                               .prefs = nullptr,
                                               .placement = placement}),
                  5);
    }
    peaks.ExpectNeverWrittenFrom(0);
}

TEST(PeakRequest, UsesTheHostsSettingsBeforeThePrivateCopy) {
    const BarsAndToneInfo quiet{.numChannels = 1, .amplitude = 0.125F};
    const BarsAndToneInfo loud{.numChannels = 1, .amplitude = 0.5F};
    for (const bool both : {true, false}) {
        Peaks peaks(1, 20);
        EXPECT_EQ(test::Send(test::PeakRequest{.position = 0,
                                               .peakRate = 100.0F,
                                               .count = 20,
                                               .maxima = peaks.maxima.Pointers(),
                                               .minima = peaks.minima.Pointers(),
                                               .privateData = &loud,
                                               .prefs = both ? &quiet : nullptr}),
                  0);
        EXPECT_TRUE(AllAre(peaks.maxima[0].Samples(), both ? 0.125F : 0.5F));
    }
}

TEST(PeakRequest, ReadsRecordsAndSettingsAtAnyAddress) {
    for (const test::Placement& placement : test::kPlacements) {
        test::RequestRecord settings(sizeof(BarsAndToneInfo), placement);
        settings.Put(0, BarsAndToneInfo{.numChannels = 1, .amplitude = 0.5F});
        Peaks peaks(1, 20);
        EXPECT_EQ(test::Send(test::PeakRequest{.position = 0,
                                               .peakRate = 100.0F,
                                               .count = 20,
                                               .maxima = peaks.maxima.Pointers(),
                                               .minima = peaks.minima.Pointers(),
                                               .privateData = settings.Data(),
                                               .prefs = nullptr,
                                               .placement = placement}),
                  0);
        EXPECT_TRUE(AllAre(peaks.minima[0].Samples(), -0.5F));
        EXPECT_TRUE(settings.Untouched());
    }
}

TEST(PeakRequest, DrawsAToneAboveThePeakRateAsABand) {
    ExpectBand({.numChannels = 2}, 0, 100.0F, 200);
    ExpectBand({.numChannels = 6, .amplitude = 1.0F}, 48000, 999.0F, 333);
    ExpectBand({.numChannels = 1, .amplitude = -0.5F}, -7, 50.0F, 10);
}

TEST(PeakRequest, DrawsAToneBelowThePeakRateAsOneLine) {
    ExpectWaveform({.numChannels = 2}, 0, 2000.0F, 200);
    ExpectWaveform({.numChannels = 6}, 48000, 1001.0F, 333);
    ExpectWaveform({.sampleRate = 44100.0F, .numChannels = 1, .frequency = 20.0F}, 12345, 100.0F, 500);
}

TEST(PeakRequest, DrawsAToneAtThePeakRateAsABand) {
    ExpectBand({.numChannels = 2}, 0, 1000.0F, 100);
    ExpectBand({.numChannels = 1, .frequency = 48000.0F}, 0, 48000.0F, 100);
}

TEST(PeakRequest, TakesThePeakRateFromItsTickLength) {
    // 47952 Hz has 5297297.297 ticks, cut to 5297297: a rate of 47952.0027 Hz, above the tone.
    ExpectWaveform({.numChannels = 1, .frequency = 47952.0F}, 0, 47952.0F, 100);
}

TEST(PeakRequest, DrawsAToneJustBelowAndJustAboveThePeakRate) {
    ExpectWaveform({.numChannels = 1, .frequency = std::nextafter(1000.0F, 0.0F)}, 0, 1000.0F, 100);
    ExpectBand({.numChannels = 1, .frequency = std::nextafter(1000.0F, 2000.0F)}, 0, 1000.0F, 100);
}

TEST(PeakRequest, PlacesItsFirstValueAtTheRequestedSample) {
    // Sample 12 of 1000 Hz at 48000 Hz is the crest; a peak lasts 12 samples at 4000 Hz, so it is peak 1.
    Peaks peaks(1, 4);
    ASSERT_EQ(Draw({.numChannels = 1}, 12, 4000.0F, 4, peaks), 0);
    EXPECT_NEAR(peaks.maxima[0][0], 0.25, 1e-7);
    EXPECT_NEAR(peaks.maxima[0][1], 0.0, 1e-7);
    EXPECT_NEAR(peaks.maxima[0][2], -0.25, 1e-7);
    EXPECT_NEAR(peaks.maxima[0][3], 0.0, 1e-7);
}

TEST(PeakRequest, DrawsTheWaveformAtEveryPosition) {
    for (const std::int64_t position :
         {std::int64_t{1}, std::int64_t{-1}, std::int64_t{-48000}, std::int64_t{1} << 31, std::int64_t{1} << 40,
          test::kInt64Max / 5292000 + 1, test::kInt64Max, test::kInt64Min}) {
        ExpectWaveform({.numChannels = 1, .frequency = 440.0F}, position, 3000.0F, 100);
    }
}

TEST(PeakRequest, AtAPeakRateOfZeroDrawsEveryToneAsABand) {
    for (const float frequencyHz : {0.0F, 20.0F, 1000.0F, 1e30F}) {
        ExpectBand({.numChannels = 2, .frequency = frequencyHz}, 100, 0.0F, 50);
        ExpectBand({.numChannels = 2, .frequency = frequencyHz}, 100, -0.0F, 50);
    }
    // A frequency below zero is below a rate of zero.
    ExpectWaveform({.numChannels = 1, .frequency = -1.0F}, 100, 0.0F, 50);
}

TEST(PeakRequest, AtAClipRateOfZeroStillAnswers) {
    ExpectBand({.sampleRate = 0.0F, .numChannels = 2}, 100, 100.0F, 50);
    ExpectWaveform({.sampleRate = 0.0F, .numChannels = 2}, 100, 2000.0F, 50);
}

TEST(PeakRequest, DrawsAFrequencyThatIsNoNumberAsABand) {
    ExpectBand({.numChannels = 1, .frequency = std::nanf("")}, 0, 2000.0F, 50);
    ExpectBand({.numChannels = 1, .frequency = std::numeric_limits<float>::infinity()}, 0, 2000.0F, 50);
}

TEST(PeakRequest, WritesAsManyValuesAsAskedFor) {
    for (const std::int32_t count : {0, 1, 2, 3, 4, 5, 15, 16, 17, 1601}) {
        ExpectBand({.numChannels = 2}, 5, 100.0F, count);
        ExpectWaveform({.numChannels = 2}, 5, 2000.0F, count);
    }
}

TEST(PeakRequest, ForNoValuesOrFewerWritesNothing) {
    for (const std::int32_t count : {0, -1, -100, std::numeric_limits<std::int32_t>::min()}) {
        for (std::uint32_t format = 0; format <= 4; ++format) {
            Peaks peaks(6, 32);
            EXPECT_EQ(Draw(Ident(format, 6), 100, 100.0F, count, peaks), 0);
            EXPECT_EQ(Draw({.numChannels = 6}, 100, 100.0F, count, peaks), 0);
            EXPECT_EQ(Draw({.numChannels = 6}, 100, 2000.0F, count, peaks), 0);
            peaks.ExpectNeverWrittenFrom(0);
        }
    }
}

TEST(PeakRequest, LeavesTheChannelsAClipDoesNotHave) {
    for (const float peakRateHz : {100.0F, 2000.0F}) {
        Peaks peaks(6, 32);
        ASSERT_EQ(Draw({.numChannels = 2}, 0, peakRateHz, 32, peaks), 0);
        EXPECT_EQ(peaks.minima[1].UnwrittenSamples(), 0U);
        peaks.ExpectNeverWrittenFrom(2);
    }
}

TEST(PeakRequest, OfAClipWithoutChannelsWritesNothing) {
    for (const std::uint32_t numChannels : {0U, 0x80000000U, 0xFFFFFFFFU}) {
        Peaks peaks(6, 32);
        EXPECT_EQ(Draw({.numChannels = numChannels}, 0, 100.0F, 32, peaks), 0);
        EXPECT_EQ(Draw({.numChannels = numChannels}, 0, 2000.0F, 32, peaks), 0);
        EXPECT_EQ(Draw(Ident(9, numChannels), 0, 100.0F, 32, peaks), 0);
        peaks.ExpectNeverWrittenFrom(0);
    }
}

TEST(PeakRequest, DrawsASteadyToneForEveryIdentFlagButOne) {
    for (const std::uint32_t flag : {0U, 2U, 3U, 0x101U, 0xFFFFFFFFU}) {
        ExpectBand({.numChannels = 2, .identifyChannels = flag, .identifierFormat = EBUStereo400}, 0, 100.0F, 50);
    }
}

}  // namespace
