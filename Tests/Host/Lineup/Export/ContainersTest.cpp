#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace {

using lineup::Rational;
using nlohmann::json;
using test::TemporaryFolder;

// Seven frames of a rate, and the samples they take at 48 kHz, to the nearest.
struct SevenFrames {
    Rational rate;
    std::int64_t samples;
};
constexpr std::array<SevenFrames, 7> kRates = {{
    {{24000, 1001}, 14014},
    {{24, 1}, 14000},
    {{25, 1}, 13440},
    {{30000, 1001}, 11211},  // 11211.2
    {{30, 1}, 11200},
    {{50, 1}, 6720},
    {{60000, 1001}, 5606},  // 5605.6
}};

lineup::ExportSettings At(const std::filesystem::path& target, Rational rate) {
    auto settings = test::SmallExport(target, 7);
    settings.frameRate = rate;
    settings.overwrite = true;
    return settings;
}

std::string RateText(Rational rate) {
    return std::to_string(rate.num) + "/" + std::to_string(rate.den);
}

double Number(const std::string& fraction) {
    return std::stod(fraction) / std::stod(fraction.substr(fraction.find('/') + 1));
}

TEST(Containers, EndPictureAndSoundTogetherToTheSample) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const char* name : {"a.mov", "a.mkv", "a.mxf"}) {
        const std::size_t channels = std::string(name) == "a.mxf" ? 1 : 2;
        for (const auto& [rate, samples] : kRates) {
            const auto report = Export(clip, At(folder / name, rate));
            EXPECT_EQ(report.frames, 7);
            EXPECT_EQ(report.samples, samples);
            const json video = test::Streams(folder / name, "video").at(0);
            EXPECT_EQ(video.at("nb_read_frames"), "7") << name << RateText(rate);
            // Matroska counts a frame's length in nanoseconds; its readers make a near fraction of it.
            EXPECT_NEAR(Number(video.at("avg_frame_rate")), Number(RateText(rate)), 0.0001) << name;
            EXPECT_EQ(test::DecodeFloats(folder / name, "a:0").size(), static_cast<std::size_t>(samples) * channels)
                << name << RateText(rate);
        }
    }
}

TEST(Containers, OfMoviesGiveBothStreamsTheirExactLength) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const char* name : {"a.mov", "a.mp4"}) {
        for (const auto& [rate, samples] : kRates) {
            Export(clip, At(folder / name, rate));
            const json video = test::Streams(folder / name, "video").at(0);
            const std::string timeBase = video.at("time_base");  // "1/30000"
            const std::int64_t scale = std::stoll(timeBase.substr(2));
            EXPECT_EQ(video.at("duration_ts"), 7 * rate.den * scale / rate.num) << name << RateText(rate);
            EXPECT_EQ(video.at("start_pts"), 0);
            EXPECT_EQ(video.at("r_frame_rate"), RateText(rate)) << name;
            const json audio = test::Streams(folder / name, "audio").at(0);
            EXPECT_EQ(audio.at("time_base"), "1/48000");
            EXPECT_EQ(audio.at("duration_ts"), samples) << name << RateText(rate);
            EXPECT_EQ(audio.at("start_pts"), 0);
        }
    }
}

// AAC comes in blocks of 1024 samples. Decoders give the last one whole; the file says where it ends.
TEST(Containers, OfAacHoldNoMoreThanTheBlockTheSoundEndsIn) {
    const TemporaryFolder folder;
    Export(test::OpenClip(), At(folder / "a.mp4", {25, 1}));
    EXPECT_EQ(test::DecodeFloats(folder / "a.mp4", "a:0").size(), 14336U * 2);  // 13440 in whole blocks
}

TEST(Containers, ReportWhatOthersRead) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const char* name : {"a.mov", "a.mkv", "a.mp4"}) {
        const auto report = Export(clip, At(folder / name, {30000, 1001}));
        const json video = test::Streams(folder / name, "video").at(0);
        EXPECT_EQ(report.target, folder / name);
        EXPECT_EQ(report.bytes, std::filesystem::file_size(folder / name));
        EXPECT_EQ(report.container, std::string(name).substr(2));
        EXPECT_EQ(video.at("pix_fmt"), report.video->pixelFormat);
        EXPECT_EQ(video.at("width"), report.video->width);
        EXPECT_EQ(video.at("height"), report.video->height);
        EXPECT_EQ(video.at("color_space"), report.video->colour);
        EXPECT_EQ(report.video->frameRate, (Rational{30000, 1001}));
        const json audio = test::Streams(folder / name, "audio").at(0);
        EXPECT_EQ(audio.at("sample_rate"), std::to_string(report.audio.at(0).sampleRateHz));
        EXPECT_EQ(audio.at("channels"), report.audio.at(0).channels);
        EXPECT_EQ(audio.at("channel_layout"), report.audio.at(0).layout);
    }
}

// Where each format keeps the time code of its first frame.
std::string ReadTimecode(const std::filesystem::path& file) {
    const json probe = test::Probe(file);
    std::vector<json> places = probe.at("streams");
    places.insert(places.begin(), probe.at("format"));
    for (const json& place : places) {
        const json tags = place.value("tags", json::object());
        for (const char* key : {"timecode", "TIMECODE"}) {
            if (tags.contains(key)) {
                return tags.at(key);
            }
        }
    }
    return "none";
}

TEST(Containers, StartAtTheTimecode) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.mxf"}) {
        for (const auto& [text, rate] : {std::pair("10:00:00:00", Rational{25, 1}),
                                         {"10:00:00;02", {30000, 1001}},
                                         {"23:59:59:59", {60000, 1001}},
                                         {"01:00:00:00", {24000, 1001}}}) {
            auto settings = At(folder / name, rate);
            settings.timecode = lineup::Timecode(text, rate);
            Export(clip, settings);
            EXPECT_EQ(ReadTimecode(folder / name), text) << name;
            EXPECT_EQ(test::Streams(folder / name, "video").at(0).at("nb_read_frames"), "7") << name;
        }
    }
}

// The unit of a whole movie's times, a part of a second: in the box "mvhd", after a version, flags and two dates.
std::int64_t MovieTimescale(const std::filesystem::path& file) {
    const auto bytes = test::ReadBytes(file);
    constexpr std::array<std::uint8_t, 4> kBox = {'m', 'v', 'h', 'd'};
    const auto box = std::search(bytes.begin(), bytes.end(), kBox.begin(), kBox.end());
    if (bytes.end() - box < 20) {
        return 0;
    }
    return std::int64_t{box[16]} << 24 | std::int64_t{box[17]} << 16 | std::int64_t{box[18]} << 8 | box[19];
}

TEST(Containers, OfMoviesCountFramesAndSamplesInOneUnit) {
    const TemporaryFolder folder;
    Export(test::OpenClip(), At(folder / "a.mov", {30000, 1001}));
    EXPECT_EQ(MovieTimescale(folder / "a.mov"), 240000);  // of 30000 and 48000
}

// The track of the time code begins at midnight.
TEST(Containers, OfMoviesCountTheTimecodesOwnTimeInThirtyTwoBits) {
    const TemporaryFolder folder;
    for (const auto& [text, seconds] : {std::pair("10:00:00:00", 36036), {"23:59:59:00", 86485}}) {
        auto settings = At(folder / "a.mov", {30000, 1001});
        settings.timecode = lineup::Timecode(text, settings.frameRate);
        Export(test::OpenClip(), settings);
        const std::int64_t timescale = MovieTimescale(folder / "a.mov");
        EXPECT_LE(timescale * seconds, std::numeric_limits<std::int32_t>::max()) << text;
        EXPECT_GT(timescale, 0) << text;
    }
}

TEST(Containers, OfMpeg2CarryTheTimecodeInTheVideoToo) {
    const TemporaryFolder folder;
    auto settings = At(folder / "a.mxf", {30000, 1001});
    settings.timecode = lineup::Timecode("10:00:00;02", settings.frameRate);
    Export(test::OpenClip(), settings);
    // The group-of-pictures header, 00 00 01 B8, then 25 bits: drop, hours, minutes, 1, seconds, frames.
    const auto bytes = test::ReadBytes(settings.target);
    constexpr std::array<std::uint8_t, 4> kStart = {0, 0, 1, 0xB8};
    const auto group = std::search(bytes.begin(), bytes.end(), kStart.begin(), kStart.end());
    ASSERT_LT(bytes.end() - group, static_cast<std::ptrdiff_t>(bytes.size()));
    ASSERT_GE(bytes.end() - group, 8);
    const unsigned bits = (static_cast<unsigned>(group[4]) << 24U) | (static_cast<unsigned>(group[5]) << 16U) |
                          (static_cast<unsigned>(group[6]) << 8U) | group[7];
    EXPECT_EQ(bits >> 31U, 1U);           // drop frame
    EXPECT_EQ((bits >> 26U) & 31U, 10U);  // hours
    EXPECT_EQ((bits >> 20U) & 63U, 0U);   // minutes
    EXPECT_EQ((bits >> 13U) & 63U, 0U);   // seconds
    EXPECT_EQ((bits >> 7U) & 63U, 2U);    // frames
}

TEST(Containers, TakeOtherSampleRates) {
    const TemporaryFolder folder;
    lineup::BarsAndToneInfo info;
    info.sampleRate = 44100.0F;
    const auto report = Export(test::OpenClip(info), At(folder / "a.mov", {30000, 1001}));
    EXPECT_EQ(report.samples, 10300);  // 7 * 1471.47 = 10300.29
    EXPECT_EQ(test::DecodeFloats(folder / "a.mov", "a:0").size(), 20600U);
}

}  // namespace
