#include "Src/ToneGenerator/ToneGenerator.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using test::GuardedChannels;
using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;
using ChannelList = ToneGenerator::ChannelList;

constexpr std::int64_t kSampleTicks = 5292000;  // 48 kHz
constexpr long long kBeyond32Bits = 1LL << 32;
const TickTime kStart{100 * kSampleTicks};

const ToneGenerator& Generator() {
    static const ToneGenerator generator(FrameRate(kSampleTicks), 6);
    return generator;
}

std::vector<float> Expected(std::size_t count) {
    return model::Tone(kSampleTicks, kStart.Ticks(), 1000.0, 0.25, count);
}

void Tones(const ChannelList& channels, float** buffers, long long sampleOffset, long long count,
           bool peakMode = false) {
    Generator().GenerateTonesAcrossChannels(channels, kStart, 1000.0F, 0.25F, buffers, 6, sampleOffset, count,
                                            peakMode);
}

void AllTones(int numChannels, GuardedChannels& channels, long long count, bool peakMode = false) {
    Generator().GenerateTonesAcrossChannels(kStart, 1000.0F, 0.25F, channels.Pointers(), numChannels, count, peakMode);
}

void Silence(const ChannelList& channels, float** buffers, long long sampleOffset, long long count) {
    Generator().GenerateSilenceAcrossChannels(channels, buffers, 6, sampleOffset, count);
}

void ExpectUntouched(GuardedChannels& channels) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        EXPECT_EQ(channels[c].UnwrittenSamples(), channels[c].Samples().size()) << "channel " << c;
    }
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(AllChannels, CarryTheSameTone) {
    GuardedChannels channels(7, 500);
    AllTones(6, channels, 500);
    for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_TRUE(model::SameBits(Expected(500), channels[c].Samples())) << "channel " << c;
    }
    EXPECT_EQ(channels[6].UnwrittenSamples(), 500U);
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(AllChannels, OfOneChannelAreThatChannel) {
    GuardedChannels channels(2, 500);
    AllTones(1, channels, 500);
    EXPECT_TRUE(model::SameBits(Expected(500), channels[0].Samples()));
    EXPECT_EQ(channels[1].UnwrittenSamples(), 500U);
}

TEST(AllChannels, AreEachCopiedFromChannelZero) {
    // Channels 1 and 3 have no buffer: their copies fail, unreported.
    GuardedChannels channels(4, 100);
    float* buffers[] = {channels[0].Data(), nullptr, channels[2].Data(), nullptr};
    Generator().GenerateTonesAcrossChannels(kStart, 1000.0F, 0.25F, buffers, 4, 100, false);
    EXPECT_TRUE(model::SameBits(Expected(100), channels[0].Samples()));
    EXPECT_TRUE(model::SameBits(Expected(100), channels[2].Samples()));
}

TEST(AllChannels, InPeakModeCarryTheLevel) {
    GuardedChannels channels(2, 9);
    AllTones(2, channels, 9, true);
    const std::vector<float> level(9, 0.25F);
    EXPECT_TRUE(model::SameBits(level, channels[0].Samples()));
    EXPECT_TRUE(model::SameBits(level, channels[1].Samples()));
}

TEST(AllChannels, OfNoneOrFewerAreNotWritten) {
    GuardedChannels channels(2, 10);
    for (const int numChannels : {0, -1, std::numeric_limits<int>::min()}) {
        AllTones(numChannels, channels, 10);
        Generator().GenerateTonesAcrossChannels(kStart, 1000.0F, 0.25F, nullptr, numChannels, 10, false);
    }
    ExpectUntouched(channels);
}

TEST(AllChannels, OfNoSamplesOrFewerAreNotWritten) {
    GuardedChannels channels(2, 10);
    for (const long long count : {0LL, -1LL, std::numeric_limits<long long>::min()}) {
        AllTones(2, channels, count);
        AllTones(2, channels, count, true);
    }
    ExpectUntouched(channels);
}

TEST(ListedChannels, CarryTheToneAndTheOthersAreNotTouched) {
    GuardedChannels channels(6, 500);
    Tones({4, 0, 2}, channels.Pointers(), 0, 500);
    for (const std::size_t c : {0U, 2U, 4U}) {
        EXPECT_TRUE(model::SameBits(Expected(500), channels[c].Samples())) << "channel " << c;
    }
    for (const std::size_t c : {1U, 3U, 5U}) {
        EXPECT_EQ(channels[c].UnwrittenSamples(), 500U) << "channel " << c;
    }
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(ListedChannels, OfOneAreThatOne) {
    GuardedChannels channels(3, 500);
    Tones({1}, channels.Pointers(), 0, 500);
    EXPECT_TRUE(model::SameBits(Expected(500), channels[1].Samples()));
    EXPECT_EQ(channels[0].UnwrittenSamples(), 500U);
    EXPECT_EQ(channels[2].UnwrittenSamples(), 500U);
}

TEST(ListedChannels, OfAnEmptyListAreNotWritten) {
    Tones({}, nullptr, 0, 10);
    GuardedChannels channels(2, 10);
    Tones({}, channels.Pointers(), 0, 10);
    ExpectUntouched(channels);
}

TEST(ListedChannels, AreWrittenFromTheOffsetOnWithTheStartTimesPhaseThere) {
    GuardedChannels channels(2, 500);
    Tones({1, 0}, channels.Pointers(), 200, 250);
    for (std::size_t c = 0; c < 2; ++c) {
        EXPECT_TRUE(model::SameBits(Expected(250), channels[c].Samples().subspan(200, 250))) << "channel " << c;
        EXPECT_TRUE(test::IsUnwritten(channels[c][199]));
        EXPECT_TRUE(test::IsUnwritten(channels[c][450]));
        EXPECT_EQ(channels[c].UnwrittenSamples(), 250U);
    }
}

TEST(ListedChannels, InPeakModeCarryTheLevelFromTheOffsetOn) {
    GuardedChannels channels(2, 10);
    Tones({0, 1}, channels.Pointers(), 3, 5, true);
    for (std::size_t c = 0; c < 2; ++c) {
        EXPECT_TRUE(model::SameBits(std::vector<float>(5, 0.25F), channels[c].Samples().subspan(3, 5)));
        EXPECT_EQ(channels[c].UnwrittenSamples(), 5U);
    }
}

TEST(ListedChannels, AreEachCopiedFromTheFirstListed) {
    // Channel 1 has no buffer: its copy fails, unreported, and channel 2 is still a copy of channel 0.
    GuardedChannels channels(3, 100);
    float* buffers[] = {channels[0].Data(), nullptr, channels[2].Data()};
    Tones({0, 1, 2}, buffers, 0, 100);
    EXPECT_TRUE(model::SameBits(Expected(100), channels[0].Samples()));
    EXPECT_TRUE(model::SameBits(Expected(100), channels[2].Samples()));
}

TEST(ListedChannels, OfNoSamplesOrFewerAreNotWritten) {
    GuardedChannels channels(2, 10);
    for (const long long count : {0LL, -1LL}) {
        Tones({0, 1}, channels.Pointers(), 2, count);
        Tones({0, 1}, channels.Pointers(), 2, count, true);
        Silence({0, 1}, channels.Pointers(), 2, count);
    }
    ExpectUntouched(channels);
}

TEST(SilentChannels, HoldZerosFromTheOffsetOnAndTheOthersAreNotTouched) {
    GuardedChannels channels(4, 50);
    Silence({3, 0, 1}, channels.Pointers(), 10, 30);
    for (const std::size_t c : {0U, 1U, 3U}) {
        EXPECT_TRUE(model::IsSilent(channels[c].Samples().subspan(10, 30))) << "channel " << c;
        EXPECT_EQ(channels[c].UnwrittenSamples(), 20U) << "channel " << c;
    }
    EXPECT_EQ(channels[2].UnwrittenSamples(), 50U);
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(SilentChannels, OfNoBuffersOrAnEmptyListAreNotWritten) {
    Silence({0, 1}, nullptr, 0, 10);
    Silence({}, nullptr, 0, 10);
    GuardedChannels channels(2, 10);
    Silence({}, channels.Pointers(), 0, 10);
    ExpectUntouched(channels);
}

TEST(SilentChannels, AreEachCopiedFromTheFirstListed) {
    GuardedChannels channels(3, 10);
    float* gapInTheMiddle[] = {channels[0].Data(), nullptr, channels[2].Data()};
    Silence({0, 1, 2}, gapInTheMiddle, 0, 10);
    EXPECT_TRUE(model::IsSilent(channels[0].Samples()));
    EXPECT_TRUE(model::IsSilent(channels[2].Samples()));

    // With nothing to copy from, nothing is written.
    float* noFirst[] = {nullptr, channels[1].Data(), channels[2].Data()};
    Silence({0, 1}, noFirst, 0, 10);
    EXPECT_EQ(channels[1].UnwrittenSamples(), 10U);
}

TEST(Silence, IsZeroInEverySample) {
    test::GuardedBuffer buffer(100);
    Generator().GenerateSilence(buffer.Data(), 100);
    EXPECT_TRUE(model::IsSilent(buffer.Samples()));
    EXPECT_TRUE(buffer.GuardsIntact());
}

TEST(Silence, OfNoSamplesOrFewerWritesNothing) {
    test::GuardedBuffer buffer(10);
    Generator().GenerateSilence(buffer.Data(), 0);
    Generator().GenerateSilence(buffer.Data(), -1);
    Generator().GenerateSilence(nullptr, 10);
    EXPECT_EQ(buffer.UnwrittenSamples(), 10U);
    EXPECT_TRUE(buffer.GuardsIntact());
}

TEST(Silence, NarrowsItsCountTo32Bits) {
    test::GuardedBuffer buffer(10);
    Generator().GenerateSilence(buffer.Data(), kBeyond32Bits);
    EXPECT_EQ(buffer.UnwrittenSamples(), 10U);
    Generator().GenerateSilence(buffer.Data(), kBeyond32Bits + 3);
    EXPECT_EQ(buffer.UnwrittenSamples(), 7U);

    GuardedChannels channels(2, 10);
    Silence({0, 1}, channels.Pointers(), 0, kBeyond32Bits + 3);
    EXPECT_EQ(channels[0].UnwrittenSamples(), 7U);
    EXPECT_EQ(channels[1].UnwrittenSamples(), 7U);
}

}  // namespace
