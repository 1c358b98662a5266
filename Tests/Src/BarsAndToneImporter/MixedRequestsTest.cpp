// Eight threads make the same requests for sound, peaks, frames and descriptions, each in an order of its own,
// so that at any moment requests of different kinds run side by side. Every answer is the one that a
// single thread gets.
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
#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace {

using test::GuardedChannels;

constexpr std::size_t kChannels = 6;

// What a request wrote, with everything beside it.
using Bytes = std::vector<std::uint32_t>;

void Append(Bytes& bytes, GuardedChannels& channels) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        for (const float sample : channels[c].Samples()) {
            bytes.push_back(std::bit_cast<std::uint32_t>(sample));
        }
    }
    bytes.push_back(channels.GuardsIntact() ? 1U : 0U);
}

Bytes ReadAudio(const void* prefs, const void* privateData, std::int64_t position, std::uint32_t count) {
    GuardedChannels audio(kChannels, count);
    Bytes bytes;
    bytes.push_back(static_cast<std::uint32_t>(test::Send(test::AudioRequest{.position = position,
                                                                             .count = count,
                                                                             .buffers = audio.Pointers(),
                                                                             .privateData = privateData,
                                                                             .prefs = prefs})));
    Append(bytes, audio);
    return bytes;
}

Bytes ReadPeaks(const BarsAndToneInfo& settings, std::int64_t position, float peakRateHz, std::int32_t count) {
    GuardedChannels maxima(kChannels, static_cast<std::size_t>(count));
    GuardedChannels minima(kChannels, static_cast<std::size_t>(count));
    Bytes bytes;
    bytes.push_back(static_cast<std::uint32_t>(test::Send(test::PeakRequest{.position = position,
                                                                            .peakRate = peakRateHz,
                                                                            .count = count,
                                                                            .maxima = maxima.Pointers(),
                                                                            .minima = minima.Pointers(),
                                                                            .privateData = nullptr,
                                                                            .prefs = &settings})));
    Append(bytes, maxima);
    Append(bytes, minima);
    return bytes;
}

Bytes DrawFrame(std::int16_t width, std::int16_t height, std::uint32_t pixelFormat) {
    test::GuardedFrame frame(width, height, pixelFormat, pixelFormat == 0x37785556 ? 16 : 4);
    Bytes bytes;
    bytes.push_back(static_cast<std::uint32_t>(test::Send(
        test::FrameRequest{.width = width, .height = height, .pixelFormat = pixelFormat, .frame = frame.Handle()})));
    for (std::size_t line = 0; line < static_cast<std::size_t>(height); ++line) {
        bytes.insert(bytes.end(), frame.Line(line).begin(), frame.Line(line).end());
    }
    bytes.push_back(frame.GuardsIntact() ? 1U : 0U);
    return bytes;
}

// A description, the sound of its private copy, and the copy's release.
Bytes DescribeAndRead(const BarsAndToneInfo& settings, std::int64_t position) {
    test::RequestRecord info(test::kInfoRecordSize);
    info.Put<const void*>(206, &settings);
    Bytes bytes{static_cast<std::uint32_t>(test::Request(37, nullptr, info.Data()))};
    bytes.push_back(info.Get<std::uint32_t>(174));
    bytes.push_back(std::bit_cast<std::uint32_t>(info.Get<float>(178)));
    void* const copy = info.Get<void*>(198);
    const Bytes audio = ReadAudio(nullptr, copy, position, 120);
    bytes.insert(bytes.end(), audio.begin(), audio.end());
    bytes.push_back(static_cast<std::uint32_t>(test::Request(9, nullptr, copy)));
    return bytes;
}

using Request = std::function<Bytes()>;

// Requests of every kind about a clip: in the middle of a burst, across the edges of a sequence, before
// zero, far out; waveforms and bands; frames of odd sizes.
std::vector<Request> RequestsAbout(const BarsAndToneInfo& settings) {
    std::vector<Request> requests;
    for (const std::int64_t position :
         {std::int64_t{0}, std::int64_t{131990}, std::int64_t{-300}, std::int64_t{1} << 40}) {
        requests.push_back([&settings, position] { return ReadAudio(&settings, nullptr, position, 400); });
        requests.push_back([&settings, position] { return ReadPeaks(settings, position, 100.0F, 300); });
        requests.push_back([&settings, position] { return ReadPeaks(settings, position, 8000.0F, 300); });
        requests.push_back([&settings, position] { return DescribeAndRead(settings, position); });
    }
    for (const std::int16_t width : {std::int16_t{64}, std::int16_t{33}}) {
        requests.push_back([width] { return DrawFrame(width, 36, 0x37785556); });
        requests.push_back([width] { return DrawFrame(width, 17, 0x78797576); });
    }
    return requests;
}

BarsAndToneInfo ClipNumber(std::uint32_t clip) {
    constexpr std::array kRatesHz = {48000.0F, 44100.0F, 96000.0F, 47952.0F};
    return {.sampleRate = kRatesHz.at(clip % 4),
            .numChannels = clip % 3 == 0 ? 2U : 6U,
            .identifyChannels = clip % 5 == 4 ? 0U : 1U,
            .frequency = 440.0F + static_cast<float>(clip),
            .identifierFormat = static_cast<IdentifierFormat>(clip % 4)};
}

void ExpectTheSameInAnyOrderAtOnce(const std::vector<Request>& requests) {
    std::vector<Bytes> expected;
    for (const Request& request : requests) {
        expected.push_back(request());
    }
    test::OnAllThreads([&](int thread) {
        std::vector<std::size_t> order(requests.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::mt19937 engine(static_cast<std::mt19937::result_type>(thread));
        for (int round = 0; round < 2; ++round) {
            std::ranges::shuffle(order, engine);
            for (const std::size_t number : order) {
                EXPECT_EQ(requests[number](), expected[number]) << "request " << number << " on thread " << thread;
            }
        }
    });
}

TEST(MixedRequests, AboutOneClipAreAnsweredAsByASingleThread) {
    for (const std::uint32_t clip : {1U, 2U, 3U, 4U}) {
        const BarsAndToneInfo settings = ClipNumber(clip);
        ExpectTheSameInAnyOrderAtOnce(RequestsAbout(settings));
    }
}

TEST(MixedRequests, AboutManyClipsAreAnsweredAsByASingleThread) {
    std::array<BarsAndToneInfo, 8> clips;
    std::vector<Request> requests;
    for (std::uint32_t clip = 0; clip < clips.size(); ++clip) {
        clips.at(clip) = ClipNumber(clip);
        const auto about = RequestsAbout(clips.at(clip));
        requests.insert(requests.end(), about.begin(), about.end());
    }
    ExpectTheSameInAnyOrderAtOnce(requests);
}

}  // namespace
