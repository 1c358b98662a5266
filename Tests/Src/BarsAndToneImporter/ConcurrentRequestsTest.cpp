// Requests from eight threads at once give what the same requests give one after another.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/GuardedFrame.h"
#include "Tests/Support/Importer.h"
#include "Tests/Support/OnAllThreads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace {

using test::GuardedChannels;
using test::kThreads;
using test::OnAllThreads;

constexpr int kRounds = 8;
constexpr std::size_t kChannels = 6;
constexpr std::size_t kSamples = 1000;

// Everything a host has of a stretch of a clip, as the bytes that were written.
using Bytes = std::vector<std::uint32_t>;

void Append(Bytes& bytes, GuardedChannels& channels) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        for (const float sample : channels[c].Samples()) {
            bytes.push_back(std::bit_cast<std::uint32_t>(sample));
        }
    }
}

Bytes DrawFrame(std::uint32_t pixelFormat) {
    test::GuardedFrame frame(96, 54, pixelFormat, pixelFormat == 0x37785556 ? 16 : 4);
    EXPECT_EQ(
        test::Send(test::FrameRequest{.width = 96, .height = 54, .pixelFormat = pixelFormat, .frame = frame.Handle()}),
        0);
    Bytes bytes;
    for (std::size_t line = 0; line < 54; ++line) {
        bytes.insert(bytes.end(), frame.Line(line).begin(), frame.Line(line).end());
    }
    return bytes;
}

Bytes ReadStretch(const BarsAndToneInfo& settings, std::int64_t position) {
    Bytes bytes;
    GuardedChannels audio(kChannels, kSamples);
    EXPECT_EQ(test::Send(test::AudioRequest{.position = position,
                                            .count = kSamples,
                                            .buffers = audio.Pointers(),
                                            .privateData = nullptr,
                                            .prefs = &settings}),
              0);
    Append(bytes, audio);
    for (const float peakRateHz : {100.0F, 4000.0F}) {
        GuardedChannels maxima(kChannels, kSamples);
        GuardedChannels minima(kChannels, kSamples);
        EXPECT_EQ(test::Send(test::PeakRequest{.position = position,
                                               .peakRate = peakRateHz,
                                               .count = kSamples,
                                               .maxima = maxima.Pointers(),
                                               .minima = minima.Pointers(),
                                               .privateData = &settings,
                                               .prefs = nullptr}),
                  0);
        Append(bytes, maxima);
        Append(bytes, minima);
    }
    for (const std::uint32_t pixelFormat : {0x37785556U, 0x78797576U}) {
        const Bytes frame = DrawFrame(pixelFormat);
        bytes.insert(bytes.end(), frame.begin(), frame.end());
    }
    return bytes;
}

BarsAndToneInfo SettingsOf(int clip) {
    return {.sampleRate = clip % 2 == 0 ? 48000.0F : 44100.0F,
            .numChannels = 6,
            .identifyChannels = clip < 4 ? 1U : 0U,
            .frequency = 100.0F * static_cast<float>(clip + 1),
            .identifierFormat = static_cast<IdentifierFormat>(clip % 4)};
}

std::int64_t PositionOf(int step) {
    return std::int64_t{step} * 43789;
}

// expected[thread][step]: the same stretches, read one after another.
using Expected = std::array<std::array<Bytes, 4>, kThreads>;

Expected ReadOneAfterAnother(const std::array<BarsAndToneInfo, kThreads>& settings) {
    Expected expected;
    for (int thread = 0; thread < kThreads; ++thread) {
        for (int step = 0; step < 4; ++step) {
            const auto t = static_cast<std::size_t>(thread);
            expected.at(t).at(static_cast<std::size_t>(step)) = ReadStretch(settings.at(t), PositionOf(thread + step));
        }
    }
    return expected;
}

void ExpectTheSameAtOnce(const std::array<BarsAndToneInfo, kThreads>& settings,
                         const std::array<const BarsAndToneInfo*, kThreads>& records) {
    const Expected expected = ReadOneAfterAnother(settings);
    OnAllThreads([&](int thread) {
        const auto t = static_cast<std::size_t>(thread);
        for (int round = 0; round < kRounds; ++round) {
            const int step = round % 4;
            EXPECT_EQ(ReadStretch(*records.at(t), PositionOf(thread + step)),
                      expected.at(t).at(static_cast<std::size_t>(step)))
                << "thread " << thread << ", round " << round;
        }
    });
}

TEST(ConcurrentRequests, OnOneRecordGiveWhatTheyGiveOneAfterAnother) {
    for (const int clip : {0, 2, 3, 5}) {
        const BarsAndToneInfo settings = SettingsOf(clip);
        std::array<BarsAndToneInfo, kThreads> all;
        all.fill(settings);
        std::array<const BarsAndToneInfo*, kThreads> one{};
        one.fill(&settings);
        ExpectTheSameAtOnce(all, one);
    }
}

TEST(ConcurrentRequests, OnManyRecordsGiveWhatTheyGiveOneAfterAnother) {
    std::array<BarsAndToneInfo, kThreads> settings;
    std::array<const BarsAndToneInfo*, kThreads> records{};
    for (int clip = 0; clip < kThreads; ++clip) {
        const auto c = static_cast<std::size_t>(clip);
        settings.at(c) = SettingsOf(clip);
        records.at(c) = &settings.at(c);
    }
    ExpectTheSameAtOnce(settings, records);
}

TEST(ConcurrentRequests, ToDescribeClipsEachGetACopyOfTheirOwn) {
    const BarsAndToneInfo settings = SettingsOf(1);
    std::array<std::vector<void*>, kThreads> copies;
    OnAllThreads([&](int thread) {
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
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_EQ(all.size(), std::size_t{100} * kThreads);
    OnAllThreads([&](int thread) {  // each thread gives back what another one was handed
        for (void* const copy : copies.at(static_cast<std::size_t>((thread + 1) % kThreads))) {
            EXPECT_EQ(test::Request(9, nullptr, copy), 0);
        }
    });
}

TEST(ConcurrentRequests, OfEveryOtherKindAreServedToo) {
    OnAllThreads([](int) {
        for (int round = 0; round < 100; ++round) {
            test::RequestRecord record(test::kFileFormatRecordSize);
            EXPECT_EQ(test::Request(0, record.Data(), nullptr), 400);
            EXPECT_EQ(test::Request(14, nullptr, record.Data()), 0);
            EXPECT_EQ(record.Get<std::uint32_t>(0), 0x58514E56U);
            EXPECT_EQ(test::Request(27, nullptr, record.Data()), 0);
            EXPECT_EQ(record.Get<std::uint32_t>(8), 0x37785556U);
            EXPECT_EQ(test::Request(28, nullptr, nullptr), 100);
            EXPECT_EQ(test::Request(50, nullptr, nullptr), 3);
        }
    });
}

}  // namespace
