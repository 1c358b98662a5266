#include "Tests/Src/ToneGenerator/GeneratorRun.h"
#include "Tests/Support/OnAllThreads.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

using oracle::kTicksAt48kHz;
using test::GuardedChannels;
using test::SameSamples;

// A request of 0.35 s somewhere in the first cycles, another for every number.
oracle::Request RequestOf(std::size_t number) {
    return {kTicksAt48kHz, static_cast<std::int64_t>(number) * 7919 * kTicksAt48kHz * 3, 16800, number % 3 == 2};
}

TEST(ToneGeneratorConcurrency, IdentsOnEightThreadsAreWhatTheyAreOnOne) {
    constexpr std::size_t kJobs = 8 * oracle::kIdents.size();
    test::OnAllThreads([](int thread) {
        // Every thread begins elsewhere, so that different sequences meet.
        for (std::size_t i = 0; i < kJobs; ++i) {
            const std::size_t job = (i + static_cast<std::size_t>(thread) * 5) % kJobs;
            EXPECT_TRUE(test::IsTheOracles(oracle::kIdents[job / 8], RequestOf(job % 8)));
        }
    });
}

TEST(ToneGeneratorConcurrency, OneGeneratorServesManyThreads) {
    const ToneGenerator generator(zelmediatypes::FrameRate(kTicksAt48kHz), 2);
    const auto expected = oracle::Tone(4242 * kTicksAt48kHz, kTicksAt48kHz, 440.0, 0.5, 5000);
    test::OnAllThreads([&](int) {
        GuardedChannels channels(2, 5000);
        generator.GenerateTonesAcrossChannels(zelmediatypes::TickTime(4242 * kTicksAt48kHz), 440.0F, 0.5F,
                                              channels.Pointers(), 2, 5000, false);
        EXPECT_TRUE(SameSamples(channels[0].Samples(), expected));
        EXPECT_TRUE(SameSamples(channels[1].Samples(), expected));
    });
}

// What one thread keeps of a tone of whole cycles, others find, or write over with theirs.
TEST(ToneGeneratorConcurrency, TonesOfWholeKilohertzAreEachTheirOwnByTheMillisecond) {
    constexpr std::size_t kMillisecond = 48;
    constexpr std::array kTonesHz = {1000.0F, 2000.0F, 3000.0F};
    const ToneGenerator generator(zelmediatypes::FrameRate(kTicksAt48kHz), 1);
    test::OnAllThreads([&](int thread) {
        const float frequencyHz = kTonesHz.at(static_cast<std::size_t>(thread) % kTonesHz.size());
        const auto expected = oracle::Tone(0, kTicksAt48kHz, static_cast<double>(frequencyHz), 0.5, kMillisecond);
        GuardedChannels channels(1, kMillisecond);
        for (std::int64_t ms = 0; ms < 2000; ++ms) {
            const zelmediatypes::TickTime start(ms * oracle::kTicksPerMs);
            generator.GenerateTonesAcrossChannels(start, frequencyHz, 0.5F, channels.Pointers(), 1, kMillisecond,
                                                  false);
            ASSERT_TRUE(SameSamples(channels[0].Samples(), expected)) << frequencyHz << " Hz, " << ms << " ms";
        }
    });
}

}  // namespace
