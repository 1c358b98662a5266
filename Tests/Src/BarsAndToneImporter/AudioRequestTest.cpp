#include "Tests/Src/BarsAndToneImporter/AudioRequests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using test::ExpectedTone;
using test::GuardedChannels;
using test::Ident;
using test::NeverWritten;
using test::Play;
using test::SameSamples;

// Plays `count` samples of a steady tone and compares every channel with the plain loop.
void ExpectSteadyTone(const BarsAndToneInfo& settings, std::int64_t position, std::uint32_t count) {
    SCOPED_TRACE(testing::Message() << settings.frequency << " Hz at " << settings.sampleRate << " Hz, level "
                                    << settings.amplitude << ", from sample " << position);
    GuardedChannels channels(settings.numChannels, count);
    ASSERT_EQ(Play(settings, position, count, channels), 0);
    const auto expected = ExpectedTone(settings, position, count);
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        EXPECT_TRUE(SameSamples(channels[c].Samples(), expected)) << "channel " << c;
    }
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(AudioRequest, WithoutSettingsIsRefusedAndWritesNothing) {
    GuardedChannels channels(6, 100);
    for (const test::Placement& placement : test::kPlacements) {
        EXPECT_EQ(test::Send(test::AudioRequest{.position = 0,
                                                .count = 100,
                                                .buffers = channels.Pointers(),
                                                .privateData = nullptr,
                                                .prefs = nullptr,
                                                .placement = placement}),
                  5);
    }
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        EXPECT_TRUE(NeverWritten(channels[c]));
    }
}

TEST(AudioRequest, UsesTheHostsSettingsBeforeThePrivateCopy) {
    const BarsAndToneInfo prefs{.numChannels = 1, .frequency = 440.0F};
    const BarsAndToneInfo privateCopy{.numChannels = 1, .frequency = 1000.0F};
    GuardedChannels channels(1, 100);
    EXPECT_EQ(
        test::Send(test::AudioRequest{
            .position = 0, .count = 100, .buffers = channels.Pointers(), .privateData = &privateCopy, .prefs = &prefs}),
        0);
    EXPECT_TRUE(SameSamples(channels[0].Samples(), ExpectedTone(prefs, 0, 100)));
}

TEST(AudioRequest, FallsBackToThePrivateCopy) {
    const BarsAndToneInfo privateCopy{.numChannels = 1, .frequency = 1000.0F};
    GuardedChannels channels(1, 100);
    EXPECT_EQ(test::Send(test::AudioRequest{.position = 0,
                                            .count = 100,
                                            .buffers = channels.Pointers(),
                                            .privateData = &privateCopy,
                                            .prefs = nullptr}),
              0);
    EXPECT_TRUE(SameSamples(channels[0].Samples(), ExpectedTone(privateCopy, 0, 100)));
}

TEST(AudioRequest, PlaysThePrivateCopyOfADescribedClip) {
    test::RequestRecord info(test::kInfoRecordSize);
    info.Put(178, 44100.0F).Put<void*>(206, nullptr);
    ASSERT_EQ(test::Request(37, nullptr, info.Data()), 0);
    GuardedChannels channels(2, 100);
    EXPECT_EQ(test::Send(test::AudioRequest{.position = 7,
                                            .count = 100,
                                            .buffers = channels.Pointers(),
                                            .privateData = info.Get<void*>(198),
                                            .prefs = nullptr}),
              0);
    const BarsAndToneInfo expected{.sampleRate = 44100.0F};
    EXPECT_TRUE(SameSamples(channels[0].Samples(), ExpectedTone(expected, 7, 100)));
    EXPECT_TRUE(SameSamples(channels[1].Samples(), ExpectedTone(expected, 7, 100)));
    EXPECT_EQ(test::Request(9, nullptr, info.Get<void*>(198)), 0);
}

TEST(AudioRequest, ReadsRecordsAndSettingsAtAnyAddress) {
    for (const test::Placement& placement : test::kPlacements) {
        test::RequestRecord settings(sizeof(BarsAndToneInfo), placement);
        settings.Put(0, BarsAndToneInfo{.numChannels = 1, .frequency = 440.0F});
        GuardedChannels channels(1, 64);
        EXPECT_EQ(test::Send(test::AudioRequest{.position = 3,
                                                .count = 64,
                                                .buffers = channels.Pointers(),
                                                .privateData = nullptr,
                                                .prefs = settings.Data(),
                                                .placement = placement}),
                  0);
        EXPECT_TRUE(SameSamples(channels[0].Samples(), ExpectedTone({.numChannels = 1, .frequency = 440.0F}, 3, 64)));
        EXPECT_TRUE(settings.Untouched());
    }
}

TEST(AudioRequest, CountsClipTimeInTicksOfTheSampleRate) {
    EXPECT_EQ(test::TicksPerSample(48000.0F), 5292000);
    EXPECT_EQ(test::TicksPerSample(44100.0F), 5760000);
    EXPECT_EQ(test::TicksPerSample(96000.0F), 2646000);
    // Sample 48000 at 48000 Hz lies 254016000000 ticks in: one second, a whole number of cycles, so the
    // tone starts over from a phase of 0.
    GuardedChannels first(1, 1);
    GuardedChannels second(1, 1);
    ASSERT_EQ(Play({.numChannels = 1}, 0, 1, first), 0);
    ASSERT_EQ(Play({.numChannels = 1}, 48000, 1, second), 0);
    EXPECT_EQ(first[0][0], 0.0F);
    EXPECT_EQ(second[0][0], 0.0F);
}

TEST(AudioRequest, PlaysOneKilohertzAtMinusTwelveDecibelsByDefault) {
    GuardedChannels channels(2, 48);
    ASSERT_EQ(Play(BarsAndToneInfo{}, 0, 48, channels), 0);
    EXPECT_EQ(channels[0][0], 0.0F);
    EXPECT_NEAR(channels[0][6], 0.25 * 0.70710678, 1e-7);  // an eighth of 48 samples: sin 45 degrees
    EXPECT_NEAR(channels[0][12], 0.25, 1e-7);              // the crest
    EXPECT_NEAR(channels[0][24], 0.0, 1e-7);
    EXPECT_NEAR(channels[0][36], -0.25, 1e-7);
}

TEST(AudioRequest, PlaysTheSineAtEveryRate) {
    for (const float rateHz : {8000.0F, 11025.0F, 22050.0F, 32000.0F, 44100.0F, 47952.0F, 48000.0F, 48048.0F, 88200.0F,
                               96000.0F, 192000.0F, 1.0F, 0.5F, 44100.25F, 1000000.0F}) {
        ExpectSteadyTone({.sampleRate = rateHz, .numChannels = 1}, 0, 500);
        ExpectSteadyTone({.sampleRate = rateHz, .numChannels = 1}, 12345, 500);
    }
}

TEST(AudioRequest, PlaysTheSineAtEveryPosition) {
    for (const std::int64_t position :
         {std::int64_t{1}, std::int64_t{47}, std::int64_t{48}, std::int64_t{239999}, std::int64_t{240000},
          std::int64_t{-1}, std::int64_t{-48}, std::int64_t{-48000}, std::int64_t{-1234567}, std::int64_t{1} << 31,
          std::int64_t{1} << 32, std::int64_t{-1} * (std::int64_t{1} << 40), test::kInt64Max / 5292000,
          test::kInt64Max / 5292000 + 1, test::kInt64Max, test::kInt64Min}) {
        ExpectSteadyTone({.numChannels = 1}, position, 300);
        ExpectSteadyTone({.sampleRate = 44100.0F, .numChannels = 2}, position, 300);
    }
}

TEST(AudioRequest, PlaysTheSineAtEveryFrequencyAndLevel) {
    for (const float frequencyHz : {20.0F, 400.0F, 997.0F, 1000.0F, 19999.5F, 24000.0F, 48000.0F, 100000.0F, 0.0F,
                                    -0.0F, -440.0F, 1e-30F, 1e30F}) {
        for (const float level : {0.25F, 1.0F, 2.0F, -0.5F, 0.0F, -0.0F, 1e-40F}) {
            ExpectSteadyTone({.numChannels = 1, .frequency = frequencyHz, .amplitude = level}, 4801, 200);
        }
    }
}

TEST(AudioRequest, PlaysTheSameOnAllChannels) {
    for (const std::uint32_t numChannels : {1U, 2U, 3U, 4U, 6U, 8U}) {
        ExpectSteadyTone({.numChannels = numChannels}, 1000, 777);
    }
}

TEST(AudioRequest, LeavesTheChannelsAClipDoesNotHave) {
    GuardedChannels channels(6, 64);
    ASSERT_EQ(Play({.numChannels = 2}, 0, 64, channels), 0);
    EXPECT_EQ(channels[1].UnwrittenSamples(), 0U);
    for (std::size_t c = 2; c < 6; ++c) {
        EXPECT_TRUE(NeverWritten(channels[c])) << "channel " << c;
    }
}

TEST(AudioRequest, WritesAsManySamplesAsAskedFor) {
    for (const std::uint32_t count : {0U, 1U, 2U, 3U, 4U, 5U, 15U, 16U, 17U, 31U, 63U, 1601U, 1602U}) {
        ExpectSteadyTone({.numChannels = 2}, 5, count);
    }
}

TEST(AudioRequest, OfAClipWithoutChannelsWritesNothing) {
    for (const std::uint32_t numChannels : {0U, 0x80000000U, 0xFFFFFFFFU}) {
        GuardedChannels channels(6, 64);
        EXPECT_EQ(Play({.numChannels = numChannels}, 0, 64, channels), 0);
        for (std::size_t c = 0; c < 6; ++c) {
            EXPECT_TRUE(NeverWritten(channels[c])) << numChannels << " channels, channel " << c;
        }
    }
    GuardedChannels channels(1, 1);
    EXPECT_EQ(Play({.numChannels = 0}, 0, 0xFFFFFFFF, channels), 0);
    EXPECT_TRUE(NeverWritten(channels[0]));
}

TEST(AudioRequest, PlaysASteadyToneForEveryIdentFlagButOne) {
    for (const std::uint32_t flag : {0U, 2U, 3U, 0x100U, 0x101U, 0xFFFFFFFFU}) {
        ExpectSteadyTone({.numChannels = 2, .identifyChannels = flag, .identifierFormat = EBUStereo400}, 0, 200);
    }
}

TEST(AudioRequest, ForNoSamplesWritesNothing) {
    for (std::uint32_t format = 0; format <= 4; ++format) {
        GuardedChannels channels(6, 64);
        EXPECT_EQ(Play(Ident(format, 6), 100, 0, channels), 0);
        EXPECT_EQ(Play({.numChannels = 6}, 100, 0, channels), 0);
        for (std::size_t c = 0; c < 6; ++c) {
            EXPECT_TRUE(NeverWritten(channels[c])) << "format " << format << ", channel " << c;
        }
    }
}

TEST(AudioRequest, LeavesSettingsAndBufferListAlone) {
    const BarsAndToneInfo settings = Ident(BLITS5_1, 6);
    const BarsAndToneInfo before = settings;
    GuardedChannels channels(6, 500);
    const std::vector<float*> pointers(channels.Pointers(), channels.Pointers() + 6);
    ASSERT_EQ(Play(settings, 0, 500, channels), 0);
    EXPECT_EQ(std::memcmp(&settings, &before, sizeof settings), 0);
    EXPECT_TRUE(std::equal(pointers.begin(), pointers.end(), channels.Pointers()));
}

TEST(AudioRequest, AtARateOfZeroWritesItsSamplesAllTheSame) {
    // No rate: a sample has no length in seconds, and the samples are no numbers.
    ExpectSteadyTone({.sampleRate = 0.0F, .numChannels = 2}, 0, 100);
    ExpectSteadyTone({.sampleRate = 0.0F, .numChannels = 2}, 48000, 100);
    ExpectSteadyTone({.sampleRate = -0.0F, .numChannels = 2}, -5, 100);
}

}  // namespace
