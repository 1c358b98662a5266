#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <string>

namespace {

using nlohmann::json;
using test::TemporaryFolder;

// 2.6 s on, each sequence sounds on one channel and not on its neighbours: left is silent in the stereo ident from
// 2.75 s to 3 s, and the surround ident plays its low-frequency tone.
constexpr std::int64_t kStart = 125000;

// The clip's samples, interleaved in the order of files.
std::vector<float> Expected(const lineup::Clip& clip, std::int64_t start, std::int64_t count) {
    const auto& order = lineup::FindChannelLayout(clip.NumChannels())->fileOrder;
    const auto samples = static_cast<std::size_t>(count);
    std::vector<std::vector<float>> channels(order.size(), std::vector<float>(samples));
    std::vector<float*> pointers;
    for (auto& channel : channels) {
        pointers.push_back(channel.data());
    }
    lineup::AudioReader(clip).Read(start, count, pointers);
    std::vector<float> interleaved;
    for (std::size_t i = 0; i < samples; ++i) {
        for (const int channel : order) {
            interleaved.push_back(channels.at(static_cast<std::size_t>(channel)).at(i));
        }
    }
    return interleaved;
}

lineup::ExportSettings Sound(const std::filesystem::path& target, std::int64_t samples, const char* codec) {
    auto settings = test::SmallExport(target, samples);
    settings.audioCodec = codec;
    settings.startSample = kStart;
    return settings;
}

bool SameBits(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

bool Sounds(const std::vector<float>& interleaved, std::size_t channels, std::size_t place) {
    for (std::size_t i = place; i < interleaved.size(); i += channels) {
        if (interleaved[i] != 0.0F) {
            return true;
        }
    }
    return false;
}

TEST(SoundFiles, AreCheckedWhereAWrongOrderOfChannelsWouldShow) {
    const auto stereo = Expected(test::OpenClip(2), 133000, 9000);  // 2.77 s to 2.96 s
    EXPECT_FALSE(Sounds(stereo, 2, 0));
    EXPECT_TRUE(Sounds(stereo, 2, 1));
    const auto surround = Expected(test::OpenClip(6), kStart, 9000);
    for (std::size_t place = 0; place < 6; ++place) {
        EXPECT_EQ(Sounds(surround, 6, place), place == 3) << place;
    }
}

TEST(SoundFiles, OfFloatsHoldTheVerySamplesOfTheClip) {
    const TemporaryFolder folder;
    for (const std::uint32_t channels : {1U, 2U, 6U}) {
        const lineup::Clip clip = test::OpenClip(channels);
        const auto expected = Expected(clip, kStart, 24000);
        ASSERT_NE(std::ranges::max(expected), 0.0F);
        const auto name = std::to_string(channels);
        Export(clip, Sound(folder / (name + ".wav"), 24000, "pcm-f32"));
        EXPECT_TRUE(SameBits(test::DecodeFloats(folder / (name + ".wav"), "a:0"), expected)) << channels;
        Export(clip, Sound(folder / (name + ".mov"), 12, "pcm-f32"));  // 12 frames of 1920 samples
        EXPECT_TRUE(SameBits(test::DecodeFloats(folder / (name + ".mov"), "a:0"), Expected(clip, kStart, 23040)))
            << channels;
    }
}

TEST(SoundFiles, Of24BitsHoldTheSamplesRounded) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(6);
    const auto expected = Expected(clip, kStart, 23040);
    for (const auto& [name, codec] :
         {std::pair("a.mov", "pcm-s24"), {"a.mov", "alac"}, {"a.mkv", "flac"}, {"a.mp4", "alac"}}) {
        auto settings = Sound(folder / name, 12, codec);
        settings.overwrite = true;
        Export(clip, settings);
        const auto decoded = test::DecodeIntegers(folder / name, "a:0");
        ASSERT_EQ(decoded.size(), expected.size()) << name << codec;
        for (std::size_t i = 0; i < decoded.size(); ++i) {
            ASSERT_EQ(decoded[i], std::lrint(static_cast<double>(expected[i]) * 8388608.0) * 256) << codec << ' ' << i;
        }
    }
}

TEST(SoundFiles, Of16And32BitsHoldTheSamplesRounded) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(2);
    const auto expected = Expected(clip, kStart, 4800);
    Export(clip, Sound(folder / "16.wav", 4800, "pcm-s16"));
    Export(clip, Sound(folder / "32.wav", 4800, "pcm-s32"));
    const auto of16 = test::DecodeIntegers(folder / "16.wav", "a:0");
    const auto of32 = test::DecodeIntegers(folder / "32.wav", "a:0");
    ASSERT_EQ(of16.size(), expected.size());
    ASSERT_EQ(of32.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(of16[i], std::lrint(static_cast<double>(expected[i]) * 32768.0) * 65536) << i;
        ASSERT_EQ(of32[i], std::lrint(static_cast<double>(expected[i]) * 2147483648.0)) << i;
    }
}

TEST(SoundFiles, OfAacStartInStepWithTheClip) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(6);
    auto settings = Sound(folder / "a.mp4", 25, "aac");
    settings.startSample = 0;
    Export(clip, settings);
    const auto expected = Expected(clip, 0, 48000);
    const auto decoded = test::DecodeFloats(folder / "a.mp4", "a:0");
    ASSERT_GE(decoded.size(), expected.size());
    double error = 0;
    double power = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        error += std::pow(static_cast<double>(decoded[i]) - static_cast<double>(expected[i]), 2);
        power += std::pow(static_cast<double>(expected[i]), 2);
    }
    ASSERT_GT(power, 0);
    EXPECT_LT(error, 0.001 * power);  // 30 dB down; a shift of one sample of 1 kHz would be 18 dB down
}

TEST(SoundFiles, SayWhichChannelIsWhich) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(6);
    const auto layout = [&](const char* name, std::int64_t duration) {
        const auto report = Export(clip, test::SmallExport(folder / name, duration));
        const auto read = test::Streams(folder / name, "audio").at(0).at("channel_layout").get<std::string>();
        EXPECT_EQ(report.audio.at(0).layout, read);
        EXPECT_EQ(report.audio.size(), 1U);
        return read;
    };
    EXPECT_EQ(layout("a.mov", 2), "5.1(side)");
    EXPECT_EQ(layout("a.mkv", 2), "5.1(side)");
    EXPECT_EQ(layout("a.mp4", 2), "5.1");
    EXPECT_EQ(layout("a.wav", 4800), "5.1(side)");
}

// The channel mask lies 28 bytes after the start of the chunk "fmt ", FL FR FC LFE SL SR: 0x60F.
TEST(SoundFiles, OfWaveCarryTheSideLayoutsMask) {
    const TemporaryFolder folder;
    Export(test::OpenClip(6), test::SmallExport(folder / "a.wav", 480));
    const auto bytes = test::ReadBytes(folder / "a.wav");
    const std::string text(bytes.begin(), bytes.end());
    const auto chunk = text.find("fmt ");
    ASSERT_NE(chunk, std::string::npos);
    EXPECT_EQ(bytes.at(chunk + 28), 0x0F);
    EXPECT_EQ(bytes.at(chunk + 29), 0x06);
    EXPECT_EQ(bytes.at(chunk + 30), 0);
    EXPECT_EQ(bytes.at(chunk + 31), 0);
}

TEST(SoundFiles, OfWaveCountTheTimecodeInSamplesSinceMidnight) {
    const TemporaryFolder folder;
    auto settings = test::SmallExport(folder / "a.wav", 480);
    settings.timecode = lineup::Timecode("10:00:00:00", settings.frameRate);
    Export(test::OpenClip(), settings);
    EXPECT_EQ(test::Probe(folder / "a.wav").at("format").at("tags").at("time_reference"), "1728000000");
}

TEST(SoundFiles, CanHaveATrackAChannel) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(6);
    const auto expected = Expected(clip, kStart, 23040);
    for (const char* name : {"a.mov", "a.mkv", "a.mxf"}) {
        auto settings = Sound(folder / name, 12, "pcm-s24");
        settings.monoTracks = true;
        const auto report = Export(clip, settings);
        ASSERT_EQ(report.audio.size(), 6U);
        EXPECT_EQ(report.audio.at(3).title, "LFE");
        ASSERT_EQ(test::Streams(folder / name, "audio").size(), 6U) << name;
        for (std::size_t track = 0; track < 6; ++track) {
            const auto decoded = test::DecodeIntegers(folder / name, "a:" + std::to_string(track));
            ASSERT_EQ(decoded.size(), 23040U) << name;
            for (std::size_t i = 0; i < decoded.size(); i += 7) {
                const double sample = static_cast<double>(expected.at(6 * i + track));
                ASSERT_EQ(decoded[i], std::lrint(sample * 8388608.0) * 256) << name << ' ' << track << ' ' << i;
            }
        }
    }
}

TEST(SoundFiles, NameTheTracksOfSingleChannels) {
    const TemporaryFolder folder;
    const auto names = [&folder](const char* name, const char* tag) {
        auto settings = test::SmallExport(folder / name, 1);
        settings.monoTracks = true;
        Export(test::OpenClip(6), settings);
        std::string all;
        for (const json& stream : test::Streams(folder / name, "audio")) {
            all += stream.at("tags").value(tag, "?") + " ";
        }
        return all;
    };
    EXPECT_EQ(names("a.mov", "handler_name"), "L R C LFE Ls Rs ");
    EXPECT_EQ(names("a.mkv", "title"), "L R C LFE Ls Rs ");
}

TEST(SoundFiles, OfMovieTracksOfSingleChannelsSayWhichOneEachIs) {
    const TemporaryFolder folder;
    auto settings = test::SmallExport(folder / "a.mov", 1);
    settings.monoTracks = true;
    Export(test::OpenClip(6), settings);
    std::string layouts;
    for (const json& stream : test::Streams(folder / "a.mov", "audio")) {
        layouts += stream.value("channel_layout", "?") + ", ";
    }
    EXPECT_EQ(layouts, "1 channels (FL), 1 channels (FR), mono, 1 channels (LFE), 1 channels (BL), 1 channels (BR), ");
}

}  // namespace
