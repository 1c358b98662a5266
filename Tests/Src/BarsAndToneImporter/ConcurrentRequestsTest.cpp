// Eight threads make requests of every kind, each in an order of its own, so that at any moment requests of different
// kinds run side by side. Every answer is the one that a single thread gets.
#include "Tests/Src/BarsAndToneImporter/ExpectedPicture.h"
#include "Tests/Src/BarsAndToneImporter/SoundRequests.h"
#include "Tests/Support/OnAllThreads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace {

using test::DrawsTheAnswer;
using test::PlaysTheAnswer;

// A request, and whether its answer is right.
using Request = std::function<testing::AssertionResult()>;

// A description, the sound of its private copy, and the copy's release.
testing::AssertionResult IsDescribed(const BarsAndToneInfo& settings, std::int64_t position) {
    test::RequestRecord info(test::kInfoRecordSize);
    info.Put<const void*>(206, &settings);
    const bool served = test::Request(37, nullptr, info.Data()) == 0 &&
                        info.Get<std::uint32_t>(174) == settings.numChannels &&
                        info.Get<float>(178) == settings.sampleRate;
    void* const copy = info.Get<void*>(198);
    test::GuardedChannels audio(oracle::kBuffers, 120);
    test::Send(test::AudioRequest{
        .position = position, .count = 120, .buffers = audio.Pointers(), .privateData = copy, .prefs = nullptr});
    const auto sounds = Hold(oracle::AnswerToAudio(settings, position, 120), audio);
    const bool released = test::Request(9, nullptr, copy) == 0;
    return served && released ? sounds : testing::AssertionFailure() << "the description is another";
}

testing::AssertionResult ListsAreServed() {
    test::RequestRecord record(test::kFileFormatRecordSize);
    const bool right = test::Request(0, record.Data(), nullptr) == 400 &&
                       test::Request(14, nullptr, record.Data()) == 0 && record.Get<std::uint32_t>(0) == 0x58514E56U &&
                       test::Request(27, nullptr, record.Data()) == 0 && record.Get<std::uint32_t>(8) == 0x37785556U &&
                       test::Request(28, nullptr, nullptr) == 100 && test::Request(50, nullptr, nullptr) == 3;
    return right ? testing::AssertionSuccess() : testing::AssertionFailure() << "a list is another";
}

// In the middle of a burst, across the edges of a sequence, before zero, far out; waveforms and bands.
void AddRequestsAbout(const BarsAndToneInfo& settings, std::vector<Request>& requests) {
    for (const std::int64_t position :
         {std::int64_t{0}, std::int64_t{131990}, std::int64_t{-300}, std::int64_t{1} << 40}) {
        requests.emplace_back([=] { return PlaysTheAnswer(settings, position, 400); });
        requests.emplace_back([=] { return DrawsTheAnswer(settings, position, 100.0F, 300); });
        requests.emplace_back([=] { return DrawsTheAnswer(settings, position, 8000.0F, 300); });
        requests.emplace_back([=] { return IsDescribed(settings, position); });
    }
}

BarsAndToneInfo ClipNumber(std::uint32_t clip) {
    constexpr std::array kRatesHz = {48000.0F, 44100.0F, 96000.0F, 47952.0F};
    return {.sampleRate = kRatesHz.at(clip % 4),
            .numChannels = clip % 3 == 0 ? 2U : 6U,
            .identifyChannels = clip % 5 == 4 ? 0U : 1U,
            .frequency = 440.0F + static_cast<float>(clip),
            .identifierFormat = static_cast<IdentifierFormat>(clip % 4)};
}

void ExpectRightAnswersInAnyOrderAtOnce(std::vector<Request> requests) {
    requests.emplace_back(ListsAreServed);
    for (const int width : {96, 33}) {
        requests.emplace_back([=] { return test::DrawsTheCards(width, 54); });
    }
    test::OnAllThreads([&](int thread) {
        std::vector<const Request*> order;
        for (const Request& request : requests) {
            order.push_back(&request);
        }
        std::mt19937 engine(static_cast<std::mt19937::result_type>(thread));
        for (int round = 0; round < 2; ++round) {
            std::ranges::shuffle(order, engine);
            for (const Request* const request : order) {
                EXPECT_TRUE((*request)()) << "on thread " << thread;
            }
        }
    });
}

TEST(ConcurrentRequests, AboutOneClipAreAnsweredAsByASingleThread) {
    for (const std::uint32_t clip : {1U, 2U, 3U, 4U}) {
        std::vector<Request> requests;
        AddRequestsAbout(ClipNumber(clip), requests);
        ExpectRightAnswersInAnyOrderAtOnce(requests);
    }
}

TEST(ConcurrentRequests, AboutManyClipsAreAnsweredAsByASingleThread) {
    std::vector<Request> requests;
    for (std::uint32_t clip = 0; clip < 8; ++clip) {
        AddRequestsAbout(ClipNumber(clip), requests);
    }
    ExpectRightAnswersInAnyOrderAtOnce(requests);
}

TEST(ConcurrentRequests, OnOneRecordAreAnsweredAsByASingleThread) {
    const BarsAndToneInfo settings = oracle::kBlits.Settings();
    test::OnAllThreads([&](int thread) {
        for (int round = 0; round < 20; ++round) {
            test::GuardedChannels channels(oracle::kBuffers, 1000);
            const std::int64_t position = (thread + round) * std::int64_t{43789};
            EXPECT_EQ(test::Play(settings, position, 1000, channels), 0);
            EXPECT_TRUE(Hold(oracle::AnswerToAudio(settings, position, 1000), channels));
        }
    });
}

TEST(ConcurrentRequests, ToDescribeClipsEachGetACopyOfTheirOwn) {
    const BarsAndToneInfo settings = oracle::kStereo400.Settings(44100.0F);
    std::array<std::vector<void*>, test::kThreads> copies;
    test::OnAllThreads([&](int thread) {
        for (int round = 0; round < 100; ++round) {
            test::RequestRecord info(test::kInfoRecordSize);
            info.Put<const void*>(206, &settings);
            EXPECT_EQ(test::Request(37, nullptr, info.Data()), 0);
            EXPECT_EQ(info.Get<std::int64_t>(186), 220500);
            copies.at(static_cast<std::size_t>(thread)).push_back(info.Get<void*>(198));
        }
    });
    std::vector<void*> all;
    for (const auto& ofThread : copies) {
        all.insert(all.end(), ofThread.begin(), ofThread.end());
    }
    std::ranges::sort(all);
    EXPECT_EQ(std::ranges::adjacent_find(all), all.end());
    test::OnAllThreads([&](int thread) {  // each thread gives back what another one was handed
        for (void* const copy : copies.at(static_cast<std::size_t>((thread + 1) % test::kThreads))) {
            EXPECT_EQ(test::Request(9, nullptr, copy), 0);
        }
    });
}

}  // namespace
