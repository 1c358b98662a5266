#include "Tests/Src/ToneGenerator/GeneratorRun.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using oracle::kTicksAt48kHz;
using test::AllAre;
using test::GuardedChannels;
using test::NothingElseIsWritten;
using test::SameSamples;
using zelmediatypes::TickTime;
using ChannelList = ToneGenerator::ChannelList;

constexpr long long kBeyond32Bits = 1LL << 32;
const TickTime kStart{100 * kTicksAt48kHz};

const ToneGenerator& Generator() {
    static const ToneGenerator generator(zelmediatypes::FrameRate(kTicksAt48kHz), 6);
    return generator;
}

std::vector<float> Expected(std::size_t count, bool peakMode = false) {
    return peakMode ? std::vector<float>(count, 0.25F)
                    : oracle::Tone(kStart.Ticks(), kTicksAt48kHz, 1000.0, 0.25, count);
}

void Tones(const ChannelList& channels, float** buffers, long long sampleOffset, long long count,
           bool peakMode = false) {
    Generator().GenerateTonesAcrossChannels(channels, kStart, 1000.0F, 0.25F, buffers, 6, sampleOffset, count,
                                            peakMode);
}

void AllTones(int numChannels, float** buffers, long long count, bool peakMode = false) {
    Generator().GenerateTonesAcrossChannels(kStart, 1000.0F, 0.25F, buffers, numChannels, count, peakMode);
}

void Silence(const ChannelList& channels, float** buffers, long long sampleOffset, long long count) {
    Generator().GenerateSilenceAcrossChannels(channels, buffers, 6, sampleOffset, count);
}

// Channels `list` hold `expected` from sample `offset` on, and nothing else is written.
void ExpectOnlyIn(const ChannelList& list, GuardedChannels& channels, const std::vector<float>& expected,
                  std::size_t offset = 0) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        const bool listed = std::ranges::count(list, static_cast<int>(c)) != 0;
        const std::size_t written = channels[c].Samples().size() - channels[c].UnwrittenSamples();
        EXPECT_EQ(written, listed ? expected.size() : 0U) << "channel " << c;
        if (listed) {
            EXPECT_TRUE(SameSamples(channels[c].Samples().subspan(offset, expected.size()), expected))
                << "channel " << c;
        }
    }
    EXPECT_TRUE(channels.GuardsIntact());
}

TEST(AllChannels, CarryTheSameTone) {
    for (const bool peakMode : {false, true}) {
        GuardedChannels channels(7, 500);
        AllTones(6, channels.Pointers(), 500, peakMode);
        ExpectOnlyIn({0, 1, 2, 3, 4, 5}, channels, Expected(500, peakMode));
    }
}

TEST(AllChannels, OfOneChannelAreThatChannel) {
    GuardedChannels channels(2, 500);
    AllTones(1, channels.Pointers(), 500);
    ExpectOnlyIn({0}, channels, Expected(500));
}

TEST(AllChannels, OfNoneOrFewerAreNotWritten) {
    GuardedChannels channels(2, 10);
    for (const int numChannels : {0, -1, std::numeric_limits<int>::min()}) {
        AllTones(numChannels, channels.Pointers(), 10);
        AllTones(numChannels, nullptr, 10);
    }
    EXPECT_TRUE(NothingElseIsWritten(channels, 0));
}

TEST(ListedChannels, CarryTheToneFromTheOffsetOnWithTheStartTimesPhaseThere) {
    for (const ChannelList& list : {ChannelList{4, 0, 2}, ChannelList{1}}) {
        for (const bool peakMode : {false, true}) {
            GuardedChannels channels(6, 500);
            Tones(list, channels.Pointers(), 200, 250, peakMode);
            ExpectOnlyIn(list, channels, Expected(250, peakMode), 200);
        }
    }
}

TEST(SilentChannels, HoldZerosFromTheOffsetOn) {
    GuardedChannels channels(4, 50);
    Silence({3, 0, 1}, channels.Pointers(), 10, 30);
    ExpectOnlyIn({3, 0, 1}, channels, std::vector<float>(30, 0.0F), 10);
}

TEST(ListedChannels, AreEachCopiedFromTheFirstListed) {
    // Channels without a buffer: their copies fail, unreported, and the others are still copies of the first.
    GuardedChannels channels(3, 100);
    float* buffers[] = {channels[0].Data(), nullptr, channels[2].Data()};
    Tones({0, 1, 2}, buffers, 0, 100);
    ExpectOnlyIn({0, 2}, channels, Expected(100));
    AllTones(3, buffers, 100);
    ExpectOnlyIn({0, 2}, channels, Expected(100));
    Silence({0, 1, 2}, buffers, 0, 100);
    ExpectOnlyIn({0, 2}, channels, std::vector<float>(100, 0.0F));
    // With nothing to copy from, nothing is written.
    float* noFirst[] = {nullptr, channels[1].Data(), channels[2].Data()};
    Silence({0, 1}, noFirst, 0, 100);
    EXPECT_EQ(channels[1].UnwrittenSamples(), 100U);
}

TEST(ListedChannels, OfAnEmptyListOrNoBuffersAreNotWritten) {
    GuardedChannels channels(2, 10);
    Tones({}, nullptr, 0, 10);
    Tones({}, channels.Pointers(), 0, 10);
    Silence({}, nullptr, 0, 10);
    Silence({}, channels.Pointers(), 0, 10);
    Silence({0, 1}, nullptr, 0, 10);
    EXPECT_TRUE(NothingElseIsWritten(channels, 0));
}

TEST(ListedChannels, OfNoSamplesOrFewerAreNotWritten) {
    GuardedChannels channels(2, 10);
    for (const long long count : {0LL, -1LL, std::numeric_limits<long long>::min()}) {
        for (const bool peakMode : {false, true}) {
            AllTones(2, channels.Pointers(), count, peakMode);
            Tones({0, 1}, channels.Pointers(), 2, count, peakMode);
        }
    }
    for (const long long count : {0LL, -1LL}) {
        Silence({0, 1}, channels.Pointers(), 2, count);
        Generator().GenerateSilence(channels[0].Data(), count);
    }
    Generator().GenerateSilence(nullptr, 10);
    EXPECT_TRUE(NothingElseIsWritten(channels, 0));
}

TEST(Silence, NarrowsItsCountTo32Bits) {
    GuardedChannels channels(2, 10);
    Generator().GenerateSilence(channels[0].Data(), kBeyond32Bits);
    EXPECT_TRUE(NothingElseIsWritten(channels, 0));
    Generator().GenerateSilence(channels[0].Data(), kBeyond32Bits + 3);
    ExpectOnlyIn({0}, channels, {0.0F, 0.0F, 0.0F});
    Silence({0, 1}, channels.Pointers(), 0, kBeyond32Bits + 3);
    ExpectOnlyIn({0, 1}, channels, {0.0F, 0.0F, 0.0F});
}

}  // namespace
