// The overview beside the audio that it stands for.
#include <lineup/AudioReader.h>
#include <lineup/WaveformOverview.h>
#include "Tests/Support/Oracle/Idents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace {

using lineup::Clip;
using lineup::WaveformOverview;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

std::vector<std::vector<float>> ReadAudio(const Clip& clip, std::int64_t position, std::size_t count) {
    std::vector<std::vector<float>> channels(static_cast<std::size_t>(clip.NumChannels()), std::vector<float>(count));
    std::vector<float*> pointers;
    pointers.reserve(channels.size());
    for (auto& channel : channels) {
        pointers.push_back(channel.data());
    }
    lineup::AudioReader(clip).Read(position, static_cast<std::int64_t>(count), pointers);
    return channels;
}

// Every sample lies between the values of the column that it falls into, but for what begins in a column's last 64th.
void ExpectAudioWithinColumns(const Clip& clip, const WaveformOverview& overview) {
    const auto sampleLength = zelmediatypes::FrameRateFromHz(clip.SampleRate());
    const std::int64_t columnTicks = overview.columnLength.Ticks();
    const TickTime covered = overview.columnLength * overview.span.columns;
    const auto count = static_cast<std::size_t>(covered.ToFrame64(sampleLength));
    const auto audio = ReadAudio(clip, overview.span.startSample, count);
    // The slowest tone here takes more than a column for a cycle, and its wave may lag by a 32nd of one, a fifth of its
    // steepest rise.
    const bool isSlow = clip.Settings()->identifyChannels == 0 && clip.Settings()->frequency < 100;
    const float slack = isSlow ? 0.2F * clip.Settings()->amplitude : 0.0F;
    for (std::size_t c = 0; c < audio.size(); ++c) {
        const auto& [name, maxima, minima] = overview.channels[c];
        for (std::size_t i = 0; i < count; ++i) {
            const std::int64_t ticks = (sampleLength * static_cast<std::int64_t>(i)).Ticks();
            if (ticks % columnTicks >= columnTicks - columnTicks / 60) {
                continue;
            }
            const auto column = static_cast<std::size_t>(ticks / columnTicks);
            ASSERT_LE(audio[c][i], maxima[column] + slack) << name << " sample " << i;
            ASSERT_GE(audio[c][i], minima[column] - slack) << name << " sample " << i;
        }
    }
}

// No band is wider than the audio under it: where a column and its neighbours agree on a level, the audio comes within
// 1 % of it. 30 ms of columns hold two whole cycles of the lowest tone, 80 Hz.
void ExpectBandsReached(const Clip& clip, const WaveformOverview& overview) {
    const auto sampleLength = zelmediatypes::FrameRateFromHz(clip.SampleRate());
    const auto columns = static_cast<std::size_t>(overview.span.columns);
    const auto window =
        static_cast<std::size_t>(TickTime(kTicksPerSecond / 1000 * 30).ToFrame64(overview.columnLength) + 1);
    const auto count =
        static_cast<std::size_t>((overview.columnLength * overview.span.columns).ToFrame64(sampleLength));
    const auto audio = ReadAudio(clip, overview.span.startSample, count);
    const auto sampleAt = [&](std::size_t column) {
        return (overview.columnLength * static_cast<std::int64_t>(column)).ToFrame64(sampleLength);
    };
    for (std::size_t c = 0; c < audio.size(); ++c) {
        const std::vector<float>& maxima = overview.channels[c].maxima;
        for (std::size_t first = 0; first + window < columns; first += window) {
            const auto begin = maxima.begin() + static_cast<std::ptrdiff_t>(first);
            const auto end = begin + static_cast<std::ptrdiff_t>(window) + 1;
            if (std::adjacent_find(begin, end, std::not_equal_to<>()) != end) {
                continue;  // an edge
            }
            const float loudest =
                *std::max_element(audio[c].begin() + sampleAt(first), audio[c].begin() + sampleAt(first + window + 1));
            ASSERT_GE(loudest, 0.99F * maxima[first]) << overview.channels[c].name << " column " << first;
        }
    }
}

class OverviewOfAudio : public testing::TestWithParam<lineup::BarsAndToneInfo> {};

TEST_P(OverviewOfAudio, BoundsEverySampleOfRandomSpans) {
    const Clip clip(std::make_shared<lineup::Importer>(TEST_BUNDLE), GetParam());
    std::mt19937_64 random(20);
    std::uniform_int_distribution<std::int64_t> start(-2000000, 5000000);  // samples
    std::uniform_int_distribution<std::int64_t> milliseconds(50, 9000);
    for (int round = 0; round < 12; ++round) {
        const std::int64_t lengthMs = milliseconds(random);
        // At least ten columns a second: a column of a sound's last moment has a silent one after it.
        std::uniform_int_distribution<std::int64_t> columns(lengthMs / 100 + 1, lengthMs / 3 + 2);
        const lineup::OverviewSpan span{start(random), TickTime(kTicksPerSecond / 1000 * lengthMs),
                                        static_cast<int>(columns(random))};
        SCOPED_TRACE(testing::Message() << "from " << span.startSample << ", " << lengthMs << " ms in "
                                        << span.columns);
        const WaveformOverview overview = ReadOverview(clip, span);
        ExpectAudioWithinColumns(clip, overview);
        ExpectBandsReached(clip, overview);
    }
}

INSTANTIATE_TEST_SUITE_P(Clips, OverviewOfAudio,
                         testing::Values(lineup::BarsAndToneInfo{},
                                         lineup::BarsAndToneInfo{
                                             .sampleRate = 44100.0F, .frequency = 997.0F, .amplitude = 1.0F},
                                         lineup::BarsAndToneInfo{.frequency = 60.0F, .amplitude = 0.1F},
                                         oracle::kStereo1000.Settings(), oracle::kStereo400.Settings(44100.0F),
                                         oracle::kMultichannel.Settings(), oracle::kMultichannel.Settings(47952.0F),
                                         oracle::kBlits.Settings(), oracle::kBlits.Settings(96000.0F)));

}  // namespace
