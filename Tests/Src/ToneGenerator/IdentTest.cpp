#include "Tests/Src/ToneGenerator/GeneratorRun.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <random>
#include <utility>

namespace {

using oracle::Ident;
using oracle::kInt64Max;
using oracle::kInt64Min;
using oracle::kTicksAt48kHz;
using oracle::Request;
using test::AllAre;
using test::Generate;
using test::GuardedChannels;
using test::IsTextbookSine;
using test::IsTheOracles;
using test::NothingElseIsWritten;

constexpr std::int64_t kSecond = oracle::kTicksPerSecond;
constexpr std::int64_t kHour = 3600 * kSecond;
constexpr std::int64_t kStep = kSecond / 20;  // every edge of every sequence is a multiple of it

// The rates of clips; some that the steps are no multiples of; and rates of peaks, down to samples longer than a step.
constexpr float kRatesHz[] = {32000.0F, 44100.0F, 48000.0F,   88200.0F, 96000.0F, 47952.0F, 11025.0F,
                              22050.0F, 44056.0F, 12345.678F, 2000.0F,  100.0F,   7.0F,     0.3F};

class IdentOf : public testing::TestWithParam<Ident> {
protected:
    template <class Check>
    static void AtEveryRate(Check check) {
        for (const float rateHz : kRatesHz) {
            ASSERT_NO_FATAL_FAILURE(check(oracle::TicksPerSample(rateHz))) << rateHz << " Hz";
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Every, IdentOf, testing::ValuesIn(oracle::kIdents), test::IdentName);

// One channel is silent but for its notes, and those are textbook sines. A note's phase is that of clip time, or, for a
// lone burst, that of the request's start.
testing::AssertionResult PlaysItsNotes(const Ident& ident, std::size_t channel, std::span<const float> samples,
                                       std::int64_t firstSample) {
    for (std::size_t i = 0, end = 0; i < samples.size(); i = end) {
        const auto noteAt = [&](std::size_t at) {
            return ident.NoteAt(channel, (firstSample + static_cast<std::int64_t>(at)) * kTicksAt48kHz);
        };
        const oracle::Note* const note = noteAt(i);
        while (end < samples.size() && noteAt(end) == note) {
            ++end;
        }
        const auto stretch = samples.subspan(i, end - i);
        const std::int64_t phase = firstSample + (note != nullptr && note->phaseOfRequest ? 0 : std::int64_t(i));
        auto right =
            note == nullptr ? AllAre(stretch, 0.0F) : IsTextbookSine(stretch, phase, note->frequencyHz, note->level);
        if (!right) {
            return right << ", from sample " << i << " of channel " << channel;
        }
    }
    return testing::AssertionSuccess();
}

TEST_P(IdentOf, ChannelsPlayTheirNotesAndAreSilentBetween) {
    // From zero, from a quarter of a cycle of 1000 Hz on, and from before the clip.
    for (const std::int64_t first : {0, 12, -240000}) {
        const std::int64_t count = GetParam().CycleTicks() / kTicksAt48kHz + 300000;
        GuardedChannels channels = Generate(GetParam(), {kTicksAt48kHz, first * kTicksAt48kHz, count});
        for (std::size_t c = 0; c < GetParam().channels; ++c) {
            EXPECT_TRUE(PlaysItsNotes(GetParam(), c, channels[c].Samples(), first)) << "from sample " << first;
        }
        EXPECT_TRUE(NothingElseIsWritten(channels, GetParam().channels));
    }
}

TEST_P(IdentOf, OneCycleAndALittleIsTheOraclesToTheBit) {
    AtEveryRate([](std::int64_t sampleTicks) {
        const std::int64_t count = GetParam().CycleTicks() / sampleTicks + 100;
        ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, 0, count}));
        ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, 0, count, true}));
    });
}

TEST_P(IdentOf, AnyRequestIsTheOraclesToTheBit) {
    const std::int64_t cycle = GetParam().CycleTicks();
    const std::pair<std::int64_t, std::int64_t> spans[] = {{0, 4 * cycle},
                                                           {kHour, 30 * kHour},
                                                           {-2 * kHour, 0},
                                                           {-kStep, kStep},
                                                           {2000 * cycle - 3 * kStep, 2000 * cycle}};
    AtEveryRate([&](std::int64_t sampleTicks) {
        std::mt19937 random(1);
        std::uniform_int_distribution<std::int64_t> anyCount(1, 7 * kStep / sampleTicks + 3);
        for (const auto& [from, to] : spans) {
            std::uniform_int_distribution<std::int64_t> anyTime(from, to - 1);
            for (int i = 0; i < 16; ++i) {
                const std::int64_t time = anyTime(random);  // some begin inside a sample
                const std::int64_t sample = oracle::SampleAtTime(time, sampleTicks) * sampleTicks;
                ASSERT_TRUE(
                    IsTheOracles(GetParam(), {sampleTicks, i % 4 == 2 ? time : sample, anyCount(random), i % 4 == 3}));
            }
        }
    });
}

TEST_P(IdentOf, AFewSamplesRoundEveryEdgeAreTheOraclesToTheBit) {
    AtEveryRate([](std::int64_t sampleTicks) {
        for (std::int64_t edge = 0; edge <= GetParam().CycleTicks(); edge += kStep) {
            const std::int64_t sample = edge / sampleTicks;
            for (const std::int64_t first : {sample - 2, sample - 1, sample, sample + 1}) {
                ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, first * sampleTicks, 1}));
                ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, first * sampleTicks, 4}));
            }
            ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, edge - 1, 3}));
            ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, edge + 1, 3}));
        }
    });
}

TEST_P(IdentOf, TimesNearTheEndsIsTheOraclesToTheBit) {
    // Up to the cycle before the last whole one: a segment's end still fits 64 bits.
    const std::int64_t cycleTicks = GetParam().CycleTicks();
    const std::int64_t last = (kInt64Max / cycleTicks - 2) * cycleTicks;
    AtEveryRate([&](std::int64_t sampleTicks) {
        const std::int64_t count = 2 * kStep / sampleTicks + 2;
        for (const std::int64_t cycle : {last, -last}) {
            ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, cycle, count}));
            ASSERT_TRUE(IsTheOracles(GetParam(), {sampleTicks, cycle - sampleTicks * count / 2, count}));
        }
    });
}

TEST_P(IdentOf, SamplesOfOddLengthsIsTheOraclesToTheBit) {
    for (std::int64_t edge = -kSecond; edge <= GetParam().CycleTicks(); edge += kStep) {
        ASSERT_TRUE(IsTheOracles(GetParam(), {1, edge - 10, 20}));
        ASSERT_TRUE(IsTheOracles(GetParam(), {1, edge - 10, 20, true}));
    }
    // Of no length, the start's step at phase zero; of minutes; and backwards, one piece from the start's step.
    for (const auto& [ticks, count] :
         {std::pair{std::int64_t{0}, 10}, {61 * kSecond + 1, 3000}, {-kTicksAt48kHz, 30000}}) {
        for (const std::int64_t start : {-kSecond / 8, std::int64_t{0}, kTicksAt48kHz, kSecond, 29 * kSecond / 10}) {
            EXPECT_TRUE(IsTheOracles(GetParam(), {ticks, start, count}));
            EXPECT_TRUE(IsTheOracles(GetParam(), {ticks, start, count, true}));
        }
    }
}

// Lengths of a sample and times that no clip has, so that sums and products wrap.
template <class Check>
void ForEachHostileRequest(std::initializer_list<std::int64_t> counts, Check check) {
    for (const std::int64_t sampleTicks :
         {kInt64Min, kInt64Min + 1, -kSecond, -kTicksAt48kHz, std::int64_t{-1}, std::int64_t{0}, std::int64_t{1},
          std::int64_t{2}, kTicksAt48kHz, kSecond, kInt64Max / 10, kInt64Max / 2 + 1, kInt64Max - 1, kInt64Max - 7,
          kInt64Max}) {
        for (const std::int64_t start :
             {kInt64Min, kInt64Min + 1, kInt64Min + 3 * kSecond, -kTicksAt48kHz, std::int64_t{-1}, std::int64_t{0},
              std::int64_t{1}, kSecond, kInt64Max - 13 * kSecond, kInt64Max - 100 * kTicksAt48kHz, kInt64Max}) {
            for (const std::int64_t count : counts) {
                check(Request{sampleTicks, start, count});
                check(Request{sampleTicks, start, count, true});
            }
        }
    }
}

TEST_P(IdentOf, HostileTimesEndsWritesEverySampleOfItsChannelsAndIsNoLouderThanItsLevel) {
    ForEachHostileRequest({1, 2, 3, 65, 300, 3000}, [](const Request& request) {
        GuardedChannels channels = Generate(GetParam(), request);
        ASSERT_TRUE(NothingElseIsWritten(channels, GetParam().channels)) << request;
        for (std::size_t c = 0; c < GetParam().channels; ++c) {
            ASSERT_EQ(channels[c].UnwrittenSamples(), 0U) << "channel " << c << ", " << request;
            const auto samples = channels[c].Samples();
            for (const float sample : samples) {
                // A tone of no rate is NaN.
                ASSERT_TRUE(std::abs(sample) <= 0.125F || (std::isnan(sample) && request.sampleTicks == kInt64Max))
                    << request;
            }
        }
    });
}

TEST_P(IdentOf, NoSamplesOrFewerWritesNothing) {
    ForEachHostileRequest({0, -1, -4294967295, kInt64Min}, [](const Request& request) {
        GuardedChannels channels(test::kBufferCount, 10);
        Generate(GetParam(), request, channels);
        ASSERT_TRUE(NothingElseIsWritten(channels, 0)) << request;
    });
}

// What is written last stays where two channels share a buffer: `first` and `second` share one in `count` samples of
// 48 kHz from `startMs` on.
struct SharedBuffer {
    const char* what;
    Ident ident;
    oracle::Channel first;
    oracle::Channel second;
    std::int64_t startMs;
    double frequencyHz;  // 0: silence
};

class IdentInSharedBuffers : public testing::TestWithParam<SharedBuffer> {};

TEST_P(IdentInSharedBuffers, WritesOneChannelAfterTheOther) {
    const auto& [what, ident, first, second, startMs, frequencyHz] = GetParam();
    GuardedChannels channels(6, 4800);
    channels.Pointers()[second] = channels.Pointers()[first];
    Generate(ident, {kTicksAt48kHz, startMs * oracle::kTicksPerMs, 4800}, channels);
    EXPECT_TRUE(frequencyHz == 0.0 ? AllAre(channels[first].Samples(), 0.0F)
                                   : IsTextbookSine(channels[first].Samples(), startMs * 48, frequencyHz, 0.125));
}

INSTANTIATE_TEST_SUITE_P(
    Orders, IdentInSharedBuffers,
    testing::Values(SharedBuffer{"RightAfterLeft", oracle::kStereo1000, oracle::kL, oracle::kR, 2800, 1000},
                    SharedBuffer{"SilenceAfterAMultichannelBurst", oracle::kMultichannel, oracle::kL, oracle::kR, 3500,
                                 0},
                    SharedBuffer{"LowFrequencyLast", oracle::kMultichannel, oracle::kL, oracle::kLfe, 2500, 80},
                    SharedBuffer{"SilenceAfterABlitsBurst", oracle::kBlits, oracle::kL, oracle::kR, 0, 0},
                    SharedBuffer{"SilenceAfterABlitsPair", oracle::kBlits, oracle::kL, oracle::kLs, 4800, 0}),
    [](const auto& row) { return row.param.what; });

TEST(BlitsIdent, OfSilenceIntoNoBuffersDoesNothing) {
    const ToneGenerator generator(zelmediatypes::FrameRate(kTicksAt48kHz), 6);
    const zelmediatypes::TickTime gap(600 * oracle::kTicksPerMs);  // up to 0.8 s
    EXPECT_EXIT((generator.GenerateBLITS(gap, nullptr, 6, 9600, false), std::exit(0)), testing::ExitedWithCode(0), "");
}

}  // namespace
