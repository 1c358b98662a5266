#include <lineup/AudioReader.h>
#include <lineup/Error.h>
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using lineup::AudioReader;
using lineup::Clip;
using lineup::Importer;

std::shared_ptr<const Importer> Load(const char* folder) {
    return std::make_shared<Importer>(folder);
}

std::vector<float*> Pointers(test::GuardedChannels& channels) {
    return {channels.Pointers(), channels.Pointers() + channels.Size()};
}

// The audio of `clip` from `position` on, read in one piece.
std::vector<std::vector<float>> ReadWhole(const Clip& clip, std::int64_t position, std::size_t count) {
    test::GuardedChannels channels(static_cast<std::size_t>(clip.NumChannels()), count);
    AudioReader reader(clip);
    reader.Read(position, static_cast<std::int64_t>(count), Pointers(channels));
    EXPECT_TRUE(channels.GuardsIntact());
    std::vector<std::vector<float>> samples;
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        EXPECT_EQ(channels[c].UnwrittenSamples(), 0U);
        samples.emplace_back(channels[c].Samples().begin(), channels[c].Samples().end());
    }
    return samples;
}

TEST(AudioReader, AsksInBlocksThatStartEveryMillisecond) {
    const Clip clip(Load(TEST_BUNDLES "/EchoImporter.bundle"));
    const auto samples = ReadWhole(clip, 4000, 10000);  // 4000 .. 13999
    EXPECT_EQ(samples[0][0], 3984.0F);                  // 4000 lies in the block of 83 ms
    EXPECT_EQ(samples[0][31], 3984.0F);
    EXPECT_EQ(samples[0][32], 4032.0F);
    EXPECT_EQ(samples[0][80], 4080.0F);
    EXPECT_EQ(samples[0][9999], 13968.0F);
    EXPECT_EQ(samples[1][9999], 13968.125F);
}

TEST(AudioReader, AsksBeforeZeroOnTheSameGrid) {
    const Clip clip(Load(TEST_BUNDLES "/EchoImporter.bundle"));
    const auto samples = ReadWhole(clip, -10, 20);
    EXPECT_EQ(samples[0][9], -48.0F);
    EXPECT_EQ(samples[0][10], 0.0F);
}

TEST(AudioReader, HandsOverSixBuffersAndDropsWhatTheClipDoesNotHave) {
    lineup::BarsAndToneInfo mono;
    mono.numChannels = 1;
    const Clip clip(Load(TEST_BUNDLES "/EchoImporter.bundle"), mono);  // it writes six channels regardless
    EXPECT_EQ(clip.RequestBuffers(), 6);
    EXPECT_EQ(ReadWhole(clip, 100, 5000).size(), 1U);
}

TEST(AudioReader, ReadsNothingWhenNothingIsAskedFor) {
    const Clip clip(Load(TEST_BUNDLE));
    test::GuardedChannels channels(2, 4);
    AudioReader reader(clip);
    reader.Read(123, 0, Pointers(channels));
    EXPECT_EQ(channels[0].UnwrittenSamples(), 4U);
}

class AudioReaderCuts : public testing::TestWithParam<lineup::BarsAndToneInfo> {};

TEST_P(AudioReaderCuts, MakeNoDifferenceToTheSamples) {
    const Clip clip(Load(TEST_BUNDLE), GetParam());
    const std::int64_t first = static_cast<std::int64_t>(clip.SampleRate()) * 4 - 1234;
    constexpr std::size_t kCount = 100000;
    const auto whole = ReadWhole(clip, first, kCount);

    std::mt19937 random(7);
    for (const int longest : {1, 7, 1601, 4800, 30000}) {
        AudioReader reader(clip);
        std::uniform_int_distribution<int> length(1, longest);
        const std::size_t end = std::min<std::size_t>(kCount, 2000 * static_cast<std::size_t>(longest));
        for (std::size_t at = 0; at < end;) {
            const std::size_t count = std::min(end - at, static_cast<std::size_t>(length(random)));
            test::GuardedChannels piece(whole.size(), count);
            reader.Read(first + static_cast<std::int64_t>(at), static_cast<std::int64_t>(count), Pointers(piece));
            ASSERT_TRUE(piece.GuardsIntact());
            for (std::size_t c = 0; c < whole.size(); ++c) {
                const auto* const expected = whole[c].data() + at;
                ASSERT_TRUE(std::equal(expected, expected + count, piece[c].Data())) << "channel " << c << " at " << at;
            }
            at += count;
        }
    }
}

lineup::BarsAndToneInfo Ident(lineup::IdentifierFormat format, std::uint32_t channels, float rateHz) {
    lineup::BarsAndToneInfo settings;
    settings.sampleRate = rateHz;
    settings.numChannels = channels;
    settings.identifyChannels = 1;
    settings.identifierFormat = format;
    return settings;
}

TEST(AudioReader, GivesSilenceWhereThePlugInWritesNothing) {
    const std::vector<float> silence(6000, 0.0F);
    const auto ofUnknownIdent =
        ReadWhole(Clip(Load(TEST_BUNDLE), Ident(lineup::IdentifierFormat{7}, 2, 48000.0F)), 100, 6000);
    EXPECT_EQ(ofUnknownIdent[0], silence);
    EXPECT_EQ(ofUnknownIdent[1], silence);
    const auto ofStereoIdent = ReadWhole(Clip(Load(TEST_BUNDLE), Ident(lineup::EBUStereo1000, 6, 48000.0F)), 100, 6000);
    EXPECT_NE(ofStereoIdent[1], silence);
    EXPECT_EQ(ofStereoIdent[2], silence);  // the ident has two channels
}

// A whole block goes straight to the caller's buffers, whatever lies in them.
TEST(AudioReader, GivesSilenceForAWholeBlockOfAnUnknownIdent) {
    const auto block = ReadWhole(Clip(Load(TEST_BUNDLE), Ident(lineup::IdentifierFormat{7}, 2, 48000.0F)), 4800, 4800);
    EXPECT_EQ(block[0], std::vector<float>(4800, 0.0F));
    EXPECT_EQ(block[1], std::vector<float>(4800, 0.0F));
}

TEST(AudioReader, LeavesBuffersBeyondTheClipsChannelsAlone) {
    const Clip clip(Load(TEST_BUNDLE));
    test::GuardedChannels channels(4, 4800);
    AudioReader(clip).Read(0, 4800, Pointers(channels));
    EXPECT_EQ(channels[1].UnwrittenSamples(), 0U);
    EXPECT_EQ(channels[2].UnwrittenSamples(), 4800U);
}

TEST(AudioReader, StaysInsideItsBuffersAtTheLowestRate) {
    lineup::BarsAndToneInfo settings;
    settings.sampleRate = 1e-38F;  // no ticks for a sample
    EXPECT_EQ(ReadWhole(Clip(Load(TEST_BUNDLE), settings), 100, 10000).size(), 2U);
}

TEST(AudioReader, RefusesPositionsThatCannotBeCounted) {
    constexpr std::int64_t kLast = std::numeric_limits<std::int64_t>::max();
    const Clip clip(Load(TEST_BUNDLE));
    EXPECT_EQ(ReadWhole(clip, kLast - 10, 10).size(), 2U);
    test::GuardedChannels channels(2, 11);
    AudioReader reader(clip);
    EXPECT_THROW(reader.Read(kLast - 10, 11, Pointers(channels)), lineup::Error);
    EXPECT_EQ(channels[0].UnwrittenSamples(), 11U);
}

INSTANTIATE_TEST_SUITE_P(Clips, AudioReaderCuts,
                         testing::Values(lineup::BarsAndToneInfo{.sampleRate = 44100.0F, .frequency = 997.0F},
                                         Ident(lineup::EBUStereo400, 2, 48000.0F),
                                         Ident(lineup::EBUMultichannel, 6, 48000.0F),
                                         Ident(lineup::EBUMultichannel, 6, 47952.0F),
                                         Ident(lineup::BLITS5_1, 6, 11025.0F)));

}  // namespace
