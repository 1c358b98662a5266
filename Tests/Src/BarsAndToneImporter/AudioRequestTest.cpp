#include "Tests/Src/BarsAndToneImporter/SoundRequests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using test::GuardedChannels;
using test::Play;
using test::PlaysTheAnswer;

TEST(AudioRequest, PlaysOneKilohertzAtMinusTwelveDecibelsByDefault) {
    GuardedChannels channels(2, 48);
    ASSERT_EQ(Play(BarsAndToneInfo{}, 0, 48, channels), 0);
    EXPECT_EQ(channels[0][0], 0.0F);
    EXPECT_NEAR(channels[0][6], 0.25 * 0.70710678, 1e-7);  // an eighth of 48 samples: sin 45 degrees
    EXPECT_NEAR(channels[0][12], 0.25, 1e-7);              // the crest
    EXPECT_NEAR(channels[0][36], -0.25, 1e-7);
}

TEST(AudioRequest, PlaysTheSineAtEveryRate) {
    for (const float rateHz : {8000.0F, 11025.0F, 22050.0F, 32000.0F, 44100.0F, 47952.0F, 48000.0F, 48048.0F, 88200.0F,
                               96000.0F, 192000.0F, 1.0F, 0.5F, 44100.25F, 1000000.0F}) {
        EXPECT_TRUE(PlaysTheAnswer({.sampleRate = rateHz, .numChannels = 1}, 0, 500));
        EXPECT_TRUE(PlaysTheAnswer({.sampleRate = rateHz, .numChannels = 1}, 12345, 500));
    }
}

TEST(AudioRequest, PlaysTheSineAtEveryPosition) {
    for (const std::int64_t position :
         {std::int64_t{1}, std::int64_t{47}, std::int64_t{240000}, std::int64_t{-1}, std::int64_t{-48000},
          std::int64_t{-1234567}, std::int64_t{1} << 31, std::int64_t{1} << 32,
          std::int64_t{-1} * (std::int64_t{1} << 40), oracle::kInt64Max / 5292000, oracle::kInt64Max / 5292000 + 1,
          oracle::kInt64Max, oracle::kInt64Min}) {
        EXPECT_TRUE(PlaysTheAnswer({.numChannels = 1}, position, 300));
        EXPECT_TRUE(PlaysTheAnswer({.sampleRate = 44100.0F, .numChannels = 2}, position, 300));
    }
}

TEST(AudioRequest, PlaysTheSineAtEveryFrequencyAndLevel) {
    for (const float frequencyHz : {20.0F, 400.0F, 997.0F, 1000.0F, 19999.5F, 24000.0F, 48000.0F, 100000.0F, 0.0F,
                                    -0.0F, -440.0F, 1e-30F, 1e30F}) {
        for (const float level : {0.25F, 1.0F, 2.0F, -0.5F, 0.0F, -0.0F, 1e-40F}) {
            EXPECT_TRUE(PlaysTheAnswer({.numChannels = 1, .frequency = frequencyHz, .amplitude = level}, 4801, 200));
        }
    }
}

TEST(AudioRequest, PlaysTheSameOnAllChannelsThatAClipHas) {
    for (const std::uint32_t numChannels : {0U, 1U, 2U, 3U, 4U, 6U, 8U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(PlaysTheAnswer({.numChannels = numChannels}, 1000, 777));
    }
    GuardedChannels channels(1, 1);
    EXPECT_EQ(Play({.numChannels = 0}, 0, 0xFFFFFFFF, channels), 0);
    EXPECT_TRUE(test::NeverWritten(channels[0]));
}

TEST(AudioRequest, WritesAsManySamplesAsAskedFor) {
    for (const std::uint32_t count : {0U, 1U, 2U, 3U, 4U, 5U, 15U, 16U, 17U, 31U, 63U, 1601U, 1602U}) {
        for (const BarsAndToneInfo& settings : test::EverySound()) {
            EXPECT_TRUE(PlaysTheAnswer(settings, 5, count));
        }
    }
}

TEST(AudioRequest, PlaysASteadyToneForEveryIdentFlagButOne) {
    for (const std::uint32_t flag : {0U, 2U, 3U, 0x100U, 0x101U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(
            PlaysTheAnswer({.numChannels = 2, .identifyChannels = flag, .identifierFormat = EBUStereo400}, 0, 200));
    }
}

TEST(AudioRequest, AtARateOfZeroWritesSamplesThatAreNaN) {
    for (const float rateHz : {0.0F, -0.0F}) {
        for (const std::int64_t position : {0, 48000, -5}) {
            EXPECT_TRUE(PlaysTheAnswer({.sampleRate = rateHz, .numChannels = 2}, position, 100));
        }
    }
}

TEST(AudioRequest, PlaysIdentsInTheirOwnChannelsAtTheirOwnLevelAndFrequency) {
    for (const std::uint32_t numChannels : {0U, 1U, 2U, 6U}) {
        for (BarsAndToneInfo settings : test::EveryIdent(48000.0F, numChannels)) {
            settings.amplitude = 1.0F;
            settings.frequency = 50.0F;
            // Round the stereo gap, in bursts of 5.1, across ends of cycles, and before the clip.
            for (const std::int64_t position : {0, 131500, 168000, 216500, 575500, 643000, -500}) {
                EXPECT_TRUE(PlaysTheAnswer(settings, position, 1000));
            }
        }
    }
}

TEST(AudioRequest, OfAnUnknownIdentIsServedAndWritesNothing) {
    for (const std::uint32_t format : {4U, 7U, 0x100U, 0xFFFFFFFFU}) {
        GuardedChannels channels(6, 64);
        const BarsAndToneInfo settings{
            .numChannels = 6, .identifyChannels = 1, .identifierFormat = static_cast<IdentifierFormat>(format)};
        EXPECT_EQ(Play(settings, 0, 0xFFFFFFFF, channels), 0);
        EXPECT_TRUE(Hold(oracle::Answer{}, channels)) << "format " << format;
    }
}

TEST(AudioRequest, LeavesSettingsAndBufferListAlone) {
    const BarsAndToneInfo settings = oracle::kBlits.Settings();
    const BarsAndToneInfo before = settings;
    GuardedChannels channels(6, 500);
    const std::vector<float*> pointers(channels.Pointers(), channels.Pointers() + 6);
    ASSERT_EQ(Play(settings, 0, 500, channels), 0);
    EXPECT_EQ(std::memcmp(&settings, &before, sizeof settings), 0);
    EXPECT_TRUE(std::equal(pointers.begin(), pointers.end(), channels.Pointers()));
}

}  // namespace
