// A clip may be used from many threads at once: eight of them read sound, overviews and frames of one clip and of
// many, and get what a single thread gets.
#include <lineup/AudioReader.h>
#include <lineup/Clip.h>
#include <lineup/WaveformOverview.h>
#include "Host/Interface/Frame/PixelFormats.h"
#include "Tests/Support/OnAllThreads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

namespace {

using lineup::Clip;
using lineup::Importer;
using test::kThreads;

// Everything a program has of a clip.
struct Reading {
    std::vector<float> samples;
    std::vector<std::uint32_t> columns;  // bits: NaN for the channels an ident does not have
    std::vector<std::uint8_t> picture;

    bool operator==(const Reading&) const = default;
};

// Each step reads another stretch, and the kinds in another order.
Reading Read(const Clip& clip, int step) {
    constexpr std::int64_t kCount = 2000;
    Reading reading;
    const auto readSound = [&] {
        const auto channels = static_cast<std::size_t>(clip.NumChannels());
        reading.samples.resize(channels * kCount);
        std::vector<float*> buffers;
        for (std::size_t c = 0; c < channels; ++c) {
            buffers.push_back(reading.samples.data() + c * kCount);
        }
        lineup::AudioReader reader(clip);
        reader.Read(std::int64_t{step} * 30011 - 500, kCount, buffers);
    };
    const auto readOverview = [&] {
        const auto overview = lineup::ReadOverview(
            clip, {.startSample = step * 1000, .length = zelmediatypes::TickTime(254016000000 * 3), .columns = 200});
        for (const auto& channel : overview.channels) {
            for (const auto* const values : {&channel.maxima, &channel.minima}) {
                std::ranges::transform(*values, std::back_inserter(reading.columns),
                                       [](float value) { return std::bit_cast<std::uint32_t>(value); });
            }
        }
    };
    const auto drawFrame = [&] {
        const int width = 40 + step;
        const auto frame = clip.ReadFrame(width, 23, kPixelFormat_VUYA_32f);
        for (int line = 0; line < 23; ++line) {
            reading.picture.insert(reading.picture.end(), frame.Line(line),
                                   frame.Line(line) + std::ptrdiff_t{width} * 16);
        }
    };
    if (step % 2 == 0) {
        readSound();
        drawFrame();
        readOverview();
    } else {
        readOverview();
        readSound();
        drawFrame();
    }
    return reading;
}

lineup::BarsAndToneInfo Settings(int clip) {
    lineup::BarsAndToneInfo settings;
    settings.sampleRate = clip % 2 == 0 ? 48000.0F : 44100.0F;
    settings.numChannels = 6;
    settings.identifyChannels = clip % 3 == 2 ? 0 : 1;
    settings.identifierFormat = static_cast<lineup::IdentifierFormat>(clip % 4);
    return settings;
}

// `clips[thread]` is what each thread reads.
void ExpectTheSameAtOnce(const std::vector<const Clip*>& clips) {
    constexpr int kSteps = 6;
    std::vector<std::vector<Reading>> expected;
    for (const Clip* const clip : clips) {
        auto& ofClip = expected.emplace_back();
        for (int step = 0; step < kSteps; ++step) {
            ofClip.push_back(Read(*clip, step));
        }
    }
    test::OnAllThreads([&](int thread) {
        const auto t = static_cast<std::size_t>(thread);
        for (int i = 0; i < 2 * kSteps; ++i) {
            const int step = (i + thread) % kSteps;
            EXPECT_EQ(Read(*clips[t], step), expected[t][static_cast<std::size_t>(step)]) << "thread " << thread;
        }
    });
}

TEST(ConcurrentClip, ReadByAllThreadsGivesWhatOneThreadGets) {
    const auto importer = std::make_shared<const Importer>(TEST_BUNDLE);
    for (int number = 0; number < 6; ++number) {
        const Clip clip(importer, Settings(number));
        ExpectTheSameAtOnce(std::vector<const Clip*>(kThreads, &clip));
    }
}

TEST(ConcurrentClip, OnEachThreadGivesWhatOneThreadGets) {
    const auto importer = std::make_shared<const Importer>(TEST_BUNDLE);
    std::vector<std::unique_ptr<Clip>> clips;
    std::vector<const Clip*> pointers;
    for (int thread = 0; thread < kThreads; ++thread) {
        clips.push_back(std::make_unique<Clip>(importer, Settings(thread)));
        pointers.push_back(clips.back().get());
    }
    ExpectTheSameAtOnce(pointers);
}

// One importer stays: loading the plug-in's code and dropping it again is the system loader's own affair.
TEST(ConcurrentClip, OfAnImporterOfItsOwnMayComeAndGoWithOthers) {
    const auto stays = std::make_shared<const Importer>(TEST_BUNDLE);
    const Reading expected = Read(Clip(stays, Settings(3)), 1);
    test::OnAllThreads([&](int) {
        for (int round = 0; round < 10; ++round) {
            const Clip clip(std::make_shared<const Importer>(TEST_BUNDLE), Settings(3));
            EXPECT_EQ(Read(clip, 1), expected);
        }
    });
}

}  // namespace
