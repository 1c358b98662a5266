#include "Src/ToneGenerator/ToneGenerator.h"
#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>
#include <vector>

namespace {

using model::Ident;
using test::GuardedChannels;

constexpr std::int64_t kSample = model::kTicksPerSampleAt48kHz;
constexpr int kThreads = 8;

// A request of 0.35 s somewhere in the first cycles, another for every number.
model::Request RequestOf(int number) {
    return {kSample, number * 7919LL * kSample * 3, 16800, number % 3 == 2};
}

bool IsTheModel(Ident ident, int number, const std::vector<std::vector<float>>& expected) {
    GuardedChannels got = model::Generate(ident, RequestOf(number));
    for (std::size_t c = 0; c < expected.size(); ++c) {
        if (!model::SameBits(expected[c], got[c].Samples())) {
            return false;
        }
    }
    return static_cast<bool>(model::NothingElseIsWritten(got, expected.size()));
}

TEST(ToneGeneratorConcurrency, IdentsOnEightThreadsAreWhatTheyAreOnOne) {
    constexpr int kRequests = 8;
    std::vector<std::vector<std::vector<float>>> expected;
    for (const Ident ident : model::kIdents) {
        for (int number = 0; number < kRequests; ++number) {
            expected.push_back(model::Render(ident, RequestOf(number)));
        }
    }

    std::atomic<int> same = 0;
    std::barrier start(kThreads);
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                start.arrive_and_wait();
                // Every thread begins elsewhere, so that different sequences meet.
                for (std::size_t i = 0; i < expected.size(); ++i) {
                    const std::size_t job = (i + static_cast<std::size_t>(thread) * 5) % expected.size();
                    const Ident ident = model::kIdents[job / kRequests];
                    same += IsTheModel(ident, static_cast<int>(job % kRequests), expected[job]) ? 1 : 0;
                }
            });
        }
    }
    EXPECT_EQ(same, kThreads * static_cast<int>(expected.size()));
}

TEST(ToneGeneratorConcurrency, OneGeneratorServesManyThreads) {
    const ToneGenerator generator(zelmediatypes::FrameRate(kSample), 2);
    const auto expected = model::Tone(kSample, 4242 * kSample, 440.0, 0.5, 5000);
    std::atomic<int> same = 0;
    std::barrier start(kThreads);
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&] {
                GuardedChannels channels(2, 5000);
                start.arrive_and_wait();
                generator.GenerateTonesAcrossChannels(zelmediatypes::TickTime(4242 * kSample), 440.0F, 0.5F,
                                                      channels.Pointers(), 2, 5000, false);
                same += model::SameBits(expected, channels[0].Samples()) ? 1 : 0;
                same += model::SameBits(expected, channels[1].Samples()) ? 1 : 0;
            });
        }
    }
    EXPECT_EQ(same, 2 * kThreads);
}

}  // namespace
