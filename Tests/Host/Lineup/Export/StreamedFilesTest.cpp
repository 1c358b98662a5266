#include <lineup/FormatTable.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

// What is written into a pipe, from front to back, in every kind of file that offers it.
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

// Refused before anything is written: such codecs cannot be written as files either.
bool IsOffered(const lineup::Clip& clip, const lineup::ExportSettings& settings) {
    try {
        CheckExport(clip, settings);
        return true;
    } catch (const lineup::UsageError&) {
        return false;
    }
}

/// Writes what `settings` make to a descriptor that may not be moved back.
void Stream(const lineup::Clip& clip, lineup::ExportSettings settings) {
    FILE* const file = std::fopen(settings.target.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    settings.pipe = fileno(file);
    Export(clip, settings);
    std::fclose(file);
}

/// A hash of each stream's packets, as a reader finds them that cannot go back, and then as one does of a file.
std::vector<std::string> PacketsOf(const fs::path& piped, const fs::path& file) {
    constexpr const char* kHash = "-map 0:v? -map 0:a -c copy -f streamhash -hash crc32 -";
    std::istringstream lines(test::RunShell(fmt::format("cat {0} | {2} -i pipe:0 {3} && {2} -i {1} {3}", piped.string(),
                                                        file.string(), FFMPEG_PROGRAM " -v error", kHash)));
    std::vector<std::string> hashes;
    for (std::string line; std::getline(lines, line);) {
        hashes.push_back(line);
    }
    return hashes;
}

lineup::ExportSettings Settings(const fs::path& target, std::string_view video, std::string_view audio,
                                bool monoTracks) {
    auto settings = test::SmallExport(target, 3);
    settings.width = 64;
    settings.height = 36;
    if (!video.empty()) {
        test::FitTo(video, settings);
    }
    settings.samples = 5760;
    settings.videoCodec = video;
    settings.audioCodec = audio;
    settings.monoTracks = monoTracks;
    settings.reproducible = true;
    settings.overwrite = true;
    settings.disk = lineup::Disk::DoNotWait;
    return settings;
}

// Each codec once, and stereo as well as six channels, in one track and in six.
TEST(StreamedFiles, HoldTheVeryPacketsOfFilesInEveryFormatAndCodec) {
    const TemporaryFolder folder;
    int streamed = 0;
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        const std::size_t rows = format.streams ? std::max(format.videoCodecs.size(), format.audioCodecs.size()) : 0;
        for (std::size_t i = 0; i < rows; ++i) {
            const auto video =
                format.videoCodecs.empty() ? std::string_view() : format.videoCodecs[i % format.videoCodecs.size()];
            const auto audio = format.audioCodecs[i % format.audioCodecs.size()];
            const lineup::Clip clip = test::OpenClip(i % 2 == 0 ? 2 : 6);
            SCOPED_TRACE(fmt::format(".{} {} {}", format.extension, video, audio));
            const std::string name = fmt::format("a.{}", format.extension);
            const auto settings = Settings(folder / name, video, audio, format.offersMonoTracks && i % 3 == 0);
            const auto piped = Settings(folder / ("piped-" + name), video, audio, settings.monoTracks);
            if (!IsOffered(clip, settings)) {
                continue;
            }
            Export(clip, settings);
            Stream(clip, piped);
            const auto hashes = PacketsOf(piped.target, settings.target);
            const auto half = static_cast<std::ptrdiff_t>(hashes.size() / 2);
            EXPECT_GT(half, 0);
            EXPECT_TRUE(std::equal(hashes.begin(), hashes.begin() + half, hashes.begin() + half, hashes.end()));
            ++streamed;
        }
    }
    EXPECT_GE(streamed, 20);
}

TEST(StreamedFiles, OfMoviesSayWhatTheirFilesSay) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(2);
    for (const auto& [name, audio] : {std::pair("a.mov", "pcm-s24"), {"a.mov", "aac"}, {"a.mp4", "aac"}}) {
        SCOPED_TRACE(fmt::format("{} {}", name, audio));
        auto settings = Settings(folder / name, "h264", audio, false);
        settings.width = 720;
        settings.height = 576;
        settings.timecode = lineup::Timecode("10:00:00:00", settings.frameRate);
        Stream(clip, settings);
        EXPECT_EQ(test::MediaInfo(settings.target,
                                  "Video;%Duration% %Width_CleanAperture%x%Height_CleanAperture% %PixelAspectRatio%"),
                  "120 704x576 1.091");
        EXPECT_EQ(test::MediaInfo(settings.target, "Other;%TimeCode_FirstFrame%"), "10:00:00:00");
        EXPECT_EQ(test::MediaInfo(settings.target, "Audio;%Duration%"),
                  lineup::FindAudioCodec(audio)->lossless ? "120" : "141");  // with AAC's silence in front
        const auto sound = test::Streams(settings.target, "audio").at(0);
        EXPECT_EQ(sound.at("start_time"),
                  lineup::FindAudioCodec(audio)->lossless ? "0.000000" : test::WaysOfFfmpeg().startOfPipedAac);
    }
}

// Sound before the picture by what AAC begins with: where the picture begins, the clip's own sound does.
TEST(StreamedFiles, OfTransportStreamsTimeSoundWithThePicture) {
    const TemporaryFolder folder;
    const auto settings = Settings(folder / "a.ts", "h264", "aac", false);
    Export(test::OpenClip(2), settings);
    const auto startOf = [&](const char* kind) {
        return std::stod(std::string(test::Streams(settings.target, kind).at(0).at("start_time")));
    };
    EXPECT_NEAR(startOf("video") - startOf("audio"), 1024.0 / 48000, 1.0 / 90000);
}

TEST(StreamedFiles, AreRefusedInFormatsThatAreNotWrittenFromFrontToBack) {
    const lineup::Clip clip = test::OpenClip();
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        auto settings = test::SmallExport(fmt::format("a.{}", format.extension), 3);
        settings.pipe = 1;
        EXPECT_EQ(IsOffered(clip, settings), format.streams) << format.extension;
    }
}

}  // namespace
