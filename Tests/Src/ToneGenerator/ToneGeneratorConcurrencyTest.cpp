#include "Tests/Src/ToneGenerator/GeneratorRun.h"
#include "Tests/Support/OnAllThreads.h"

#include <gtest/gtest.h>

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

}  // namespace
