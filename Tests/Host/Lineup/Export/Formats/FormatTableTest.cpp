#include <lineup/FormatTable.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(FormatTable, NamesEverythingOnce) {
    std::set<std::string_view> names;
    for (const auto& format : lineup::FileFormats()) {
        EXPECT_TRUE(names.insert(format.extension).second) << format.extension;
        EXPECT_FALSE(format.description.empty());
    }
    names.clear();
    for (const auto& codec : lineup::VideoCodecs()) {
        EXPECT_TRUE(names.insert(codec.name).second) << codec.name;
        EXPECT_FALSE(codec.description.empty());
    }
    for (const auto& codec : lineup::AudioCodecs()) {
        EXPECT_TRUE(names.insert(codec.name).second) << codec.name;
        EXPECT_FALSE(codec.description.empty());
    }
}

TEST(FormatTable, GivesFormatsOnlyCodecsThatExist) {
    for (const auto& format : lineup::FileFormats()) {
        for (const auto name : format.videoCodecs) {
            EXPECT_NE(lineup::FindVideoCodec(name), nullptr) << format.extension << ' ' << name;
        }
        for (const auto name : format.audioCodecs) {
            EXPECT_NE(lineup::FindAudioCodec(name), nullptr) << format.extension << ' ' << name;
        }
    }
}

TEST(FormatTable, KnowsAFileByItsExtensionInEitherCase) {
    EXPECT_EQ(lineup::FindFileFormat("a/b.c/bars.mov")->extension, "mov");
    EXPECT_EQ(lineup::FindFileFormat("BARS.MXF")->extension, "mxf");
    EXPECT_EQ(lineup::FindFileFormat("bars.avi"), nullptr);
    EXPECT_EQ(lineup::FindFileFormat("bars"), nullptr);
    EXPECT_EQ(lineup::FindFileFormat(".mov"), nullptr);
    EXPECT_EQ(lineup::FindFileFormat(""), nullptr);
}

TEST(FormatTable, EveryVideoCodecCanBeWrittenInEveryFormatThatListsIt) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& format : lineup::FileFormats()) {
        for (const auto name : format.videoCodecs) {
            auto settings = test::SmallExport(folder / ("a." + std::string(format.extension)), 2);
            test::FitTo(name, settings);
            settings.videoCodec = name;
            settings.overwrite = true;
            const auto report = Export(clip, settings);
            EXPECT_EQ(report.video->codec, name);
            const auto stream = test::Streams(settings.target, "video").at(0);
            EXPECT_EQ(stream.at("nb_read_frames"), format.audioCodecs.empty() ? "1" : "2") << format.extension << name;
        }
    }
}

// From the smallest to the largest: a size is refused in a sentence that names one that is taken, or it is written.
TEST(FormatTable, EveryVideoCodecCanBeWrittenInEverySizeThatItIsNotRefusedIn) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& format : lineup::FileFormats()) {
        for (const auto name : format.videoCodecs) {
            for (const auto& [width, height] :
                 {std::pair(2, 2), {4, 2}, {2, 290}, {256, 120}, {8192, 120}, {256, 8192}}) {
                SCOPED_TRACE(std::string(name) + " " + std::to_string(width) + "x" + std::to_string(height));
                auto settings = test::SmallExport(folder / ("a." + std::string(format.extension)), 1);
                settings.width = width;
                settings.height = height;
                settings.videoCodec = name;
                settings.overwrite = true;
                settings.disk = lineup::Disk::DoNotWait;
                try {
                    CheckExport(clip, settings);
                } catch (const lineup::UsageError& error) {
                    EXPECT_EQ(error.Option(), "size");
                    EXPECT_NE(error.Remedy().find(std::string(name) + " takes"), std::string::npos);
                    continue;
                }
                EXPECT_NO_THROW(Export(clip, settings));
            }
        }
    }
}

// Pictures that need more slices than four, and more memory than an encoder asks for unless told.
TEST(FormatTable, TheLargestPicturesAreWritten) {
    const test::TemporaryFolder folder;
    for (const auto& [name, width, height] : {std::tuple("a.mkv", 4096, 4096), {"a.mov", 8192, 8192}}) {
        auto settings = test::SmallExport(folder / name, 1);
        settings.width = width;
        settings.height = height;
        settings.videoCodec = settings.target.extension() == ".mkv" ? "ffv1" : "dnxhr-hqx";
        settings.overwrite = true;
        settings.disk = lineup::Disk::DoNotWait;
        EXPECT_NO_THROW(Export(test::OpenClip(), settings)) << width << 'x' << height;
    }
}

TEST(FormatTable, EveryAudioCodecCanBeWrittenInEveryFormatThatListsIt) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& format : lineup::FileFormats()) {
        for (const auto name : format.audioCodecs) {
            auto settings = test::SmallExport(folder / ("a." + std::string(format.extension)), 2);
            settings.audioCodec = name;
            settings.overwrite = true;
            settings.samples = 3840;
            const auto report = Export(clip, settings);
            EXPECT_EQ(report.samples, 3840);
            // Lossy blocks are whole ones: three of AAC's 1024 samples end after this file does, at 4096. A transport
            // stream has one more in front, and no way to say that it does not count.
            const auto channels = static_cast<std::size_t>(report.audio.at(0).channels);
            EXPECT_EQ(test::DecodeFloats(settings.target, "a:0").size() / channels,
                      lineup::FindAudioCodec(name)->lossless ? 3840U
                      : format.extension == "ts"             ? 5120U
                                                             : 4096U)
                << format.extension << ' ' << name;
        }
    }
}

}  // namespace
