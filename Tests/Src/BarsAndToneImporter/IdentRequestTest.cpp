// Which identification sequence a request gets, and in which channels. What each sequence sounds like is
// the tone generator's affair and is tested there.
#include "Tests/Src/BarsAndToneImporter/AudioRequests.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace {

using test::AllAre;
using test::Draw;
using test::ExpectedTone;
using test::GuardedChannels;
using test::Ident;
using test::NeverWritten;
using test::Opposite;
using test::Peaks;
using test::Play;
using test::SameSamples;

TEST(IdentAudioRequest, PlaysTheStereoIdentAtOneKilohertzAndAtFourHundredHertz) {
    for (const auto& [format, frequencyHz] : {std::pair{EBUStereo1000, 1000.0F}, std::pair{EBUStereo400, 400.0F}}) {
        GuardedChannels channels(6, 1000);
        ASSERT_EQ(Play(Ident(format, 2), 131500, 1000, channels), 0);  // the gap begins at 2.75 s, sample 132000
        const auto tone = ExpectedTone({.frequency = frequencyHz, .amplitude = 0.125F}, 131500, 1000);
        EXPECT_TRUE(SameSamples(channels[1].Samples(), tone));
        EXPECT_TRUE(SameSamples(channels[0].Samples().first(500), std::span(tone).first(500)));
        EXPECT_TRUE(AllAre(channels[0].Samples().last(500), 0.0F));
        for (std::size_t c = 2; c < 6; ++c) {
            EXPECT_TRUE(NeverWritten(channels[c])) << "channel " << c;
        }
        EXPECT_TRUE(channels.GuardsIntact());
    }
}

TEST(IdentAudioRequest, PlaysTheMultichannelIdent) {
    GuardedChannels channels(6, 1000);
    ASSERT_EQ(Play(Ident(EBUMultichannel, 6), 0, 1000, channels), 0);
    const auto tone = ExpectedTone({.frequency = 1000.0F, .amplitude = 0.125F}, 0, 1000);
    for (std::size_t c = 0; c < 5; ++c) {
        EXPECT_TRUE(SameSamples(channels[c].Samples(), tone)) << "channel " << c;
    }
    const auto lowTone = ExpectedTone({.frequency = 80.0F, .amplitude = 0.125F}, 0, 1000);
    EXPECT_TRUE(SameSamples(channels[5].Samples(), lowTone));
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(IdentAudioRequest, PlaysTheBlitsIdent) {
    GuardedChannels channels(6, 1000);
    ASSERT_EQ(Play(Ident(BLITS5_1, 6), 0, 1000, channels), 0);  // its first 0.6 s are 880 Hz on the left alone
    const auto tone = ExpectedTone({.frequency = 880.0F, .amplitude = 0.125F}, 0, 1000);
    EXPECT_TRUE(SameSamples(channels[0].Samples(), tone));
    for (std::size_t c = 1; c < 6; ++c) {
        EXPECT_TRUE(AllAre(channels[c].Samples(), 0.0F)) << "channel " << c;
    }
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(IdentAudioRequest, PlaysIdentsAtTheirOwnLevelAndFrequency) {
    GuardedChannels loud(2, 500);
    GuardedChannels usual(2, 500);
    BarsAndToneInfo settings = Ident(EBUStereo1000, 2);
    ASSERT_EQ(Play(settings, 0, 500, usual), 0);
    settings.amplitude = 1.0F;
    settings.frequency = 50.0F;
    ASSERT_EQ(Play(settings, 0, 500, loud), 0);
    EXPECT_TRUE(SameSamples(loud[0].Samples(), usual[0].Samples()));
    EXPECT_TRUE(SameSamples(loud[1].Samples(), usual[1].Samples()));
}

TEST(IdentAudioRequest, OfAnUnknownIdentIsServedAndWritesNothing) {
    for (const std::uint32_t format : {4U, 7U, 0x100U, 0xFFFFFFFFU}) {
        GuardedChannels channels(6, 64);
        EXPECT_EQ(Play(Ident(format, 6), 0, 64, channels), 0);
        EXPECT_EQ(Play(Ident(format, 6), 0, 0xFFFFFFFF, channels), 0);
        for (std::size_t c = 0; c < 6; ++c) {
            EXPECT_TRUE(NeverWritten(channels[c])) << "format " << format << ", channel " << c;
        }
    }
}

TEST(IdentPeakRequest, DrawsTheStereoIdentAsABandWithItsGap) {
    for (const IdentifierFormat format : {EBUStereo1000, EBUStereo400}) {
        Peaks peaks(6, 100);
        // One second from 2.25 s on: the gap on the left lasts from 2.75 s to 3 s.
        ASSERT_EQ(Draw(Ident(format, 2), 108000, 100.0F, 100, peaks), 0);
        EXPECT_TRUE(AllAre(peaks.maxima[0].Samples().first(50), 0.125F));
        EXPECT_TRUE(AllAre(peaks.maxima[0].Samples().subspan(50, 25), 0.0F));
        EXPECT_TRUE(AllAre(peaks.maxima[0].Samples().last(25), 0.125F));
        EXPECT_TRUE(AllAre(peaks.maxima[1].Samples(), 0.125F));
        EXPECT_TRUE(Opposite(peaks.maxima[0].Samples(), peaks.minima[0].Samples()));
        EXPECT_TRUE(Opposite(peaks.maxima[1].Samples(), peaks.minima[1].Samples()));
        peaks.ExpectNeverWrittenFrom(2);
        EXPECT_TRUE(peaks.GuardsIntact());
    }
}

TEST(IdentPeakRequest, DrawsAnIdentAsABandAtEveryPeakRate) {
    Peaks peaks(2, 100);
    ASSERT_EQ(Draw(Ident(EBUStereo400, 2), 131950, 48000.0F, 100, peaks), 0);  // far above 400 Hz
    EXPECT_TRUE(AllAre(peaks.maxima[0].Samples().first(50), 0.125F));
    EXPECT_TRUE(AllAre(peaks.maxima[0].Samples().last(50), 0.0F));
    EXPECT_TRUE(AllAre(peaks.minima[1].Samples(), -0.125F));
}

TEST(IdentPeakRequest, DrawsTheMultichannelIdentAsBands) {
    Peaks peaks(6, 100);
    ASSERT_EQ(Draw(Ident(EBUMultichannel, 6), 0, 100.0F, 100, peaks), 0);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_TRUE(AllAre(peaks.maxima[c].Samples(), 0.125F)) << "channel " << c;
        EXPECT_TRUE(AllAre(peaks.minima[c].Samples(), -0.125F)) << "channel " << c;
    }
    EXPECT_TRUE(peaks.GuardsIntact());
}

TEST(IdentPeakRequest, DrawsTheBlitsIdentAsBands) {
    Peaks peaks(6, 50);
    ASSERT_EQ(Draw(Ident(BLITS5_1, 6), 0, 100.0F, 50, peaks), 0);  // 0.5 s of its first 0.6 s, left alone
    EXPECT_TRUE(AllAre(peaks.maxima[0].Samples(), 0.125F));
    EXPECT_TRUE(AllAre(peaks.minima[0].Samples(), -0.125F));
    for (std::size_t c = 1; c < 6; ++c) {
        EXPECT_TRUE(AllAre(peaks.maxima[c].Samples(), 0.0F)) << "channel " << c;
        EXPECT_TRUE(AllAre(peaks.minima[c].Samples(), -0.0F)) << "channel " << c;
    }
    EXPECT_TRUE(peaks.GuardsIntact());
}

TEST(IdentPeakRequest, OfASixChannelIdentInAStereoClipMirrorsTwoChannels) {
    Peaks peaks(6, 20);
    ASSERT_EQ(Draw(Ident(EBUMultichannel, 2), 0, 100.0F, 20, peaks), 0);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_TRUE(AllAre(peaks.maxima[c].Samples(), 0.125F)) << "channel " << c;
    }
    EXPECT_TRUE(AllAre(peaks.minima[0].Samples(), -0.125F));
    EXPECT_TRUE(AllAre(peaks.minima[1].Samples(), -0.125F));
    for (std::size_t c = 2; c < 6; ++c) {
        EXPECT_TRUE(NeverWritten(peaks.minima[c])) << "channel " << c;
    }
}

TEST(IdentPeakRequest, OfAnUnknownIdentMirrorsWhateverTheMaximaHold) {
    for (const std::uint32_t format : {4U, 7U, 0xFFFFFFFFU}) {
        Peaks peaks(2, 5);
        const std::vector<float> held = {1.0F, -0.5F, 0.0F, -0.0F, std::numeric_limits<float>::infinity()};
        for (std::size_t i = 0; i < held.size(); ++i) {
            peaks.maxima[0][i] = held[i];
            peaks.maxima[1][i] = held[i];
        }
        EXPECT_EQ(Draw(Ident(format, 2), 0, 100.0F, 5, peaks), 0);
        const std::vector<float> mirrored = {-1.0F, 0.5F, -0.0F, 0.0F, -std::numeric_limits<float>::infinity()};
        for (std::size_t c = 0; c < 2; ++c) {
            EXPECT_TRUE(SameSamples(peaks.maxima[c].Samples(), held));
            EXPECT_TRUE(SameSamples(peaks.minima[c].Samples(), mirrored));
        }
        EXPECT_TRUE(peaks.GuardsIntact());
    }
}

}  // namespace
