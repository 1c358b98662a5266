#include <lineup/FormatTable.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using lineup::Scan;
using test::TemporaryFolder;

/// What television has, and what readers are to say of it.
struct ScannedRaster {
    const char* name = "";
    int width = 0;
    int height = 0;
    lineup::Rational frameRate;
    Scan scan = Scan::Progressive;
    const char* shown = "";  ///< of a decoded frame: interlaced, top field first
    const char* order = "";  ///< of the whole file
};

constexpr std::array<ScannedRaster, 6> kScannedRasters = {{
    {"576i", 720, 576, {25, 1}, Scan::TopFieldFirst, "1 1", "TFF"},
    {"480i", 720, 480, {30000, 1001}, Scan::BottomFieldFirst, "1 0", "BFF"},
    {"486i", 720, 486, {30000, 1001}, Scan::BottomFieldFirst, "1 0", "BFF"},
    {"1080i25", 1920, 1080, {25, 1}, Scan::TopFieldFirst, "1 1", "TFF"},
    {"1080i29.97", 1920, 1080, {30000, 1001}, Scan::TopFieldFirst, "1 1", "TFF"},
    {"576p", 720, 576, {25, 1}, Scan::Progressive, "0 0", ""},
}};

lineup::ExportSettings Settings(const std::filesystem::path& target, const ScannedRaster& raster,
                                std::string_view codec) {
    auto settings = test::SmallExport(target, 1);
    settings.width = raster.width;
    settings.height = raster.height;
    settings.frameRate = raster.frameRate;
    settings.scan = raster.scan;
    settings.videoCodec = codec;
    settings.overwrite = true;
    return settings;
}

std::string ShownFields(const std::filesystem::path& file) {
    const auto frame = test::Frames(file, "frame=interlaced_frame,top_field_first").at(0);
    return fmt::format("{} {}", frame.at("interlaced_frame").get<int>(), frame.at("top_field_first").get<int>());
}

/// How FFmpeg has the order in a file's head. Where fields are lines of one frame by turns, QuickTime and Matroska have
/// numbers of their own for that, which it names by both fields.
bool IsOrder(const std::string& order, const ScannedRaster& raster) {
    switch (raster.scan) {
        case Scan::TopFieldFirst:
            return order == "tt" || order == "tb";
        case Scan::BottomFieldFirst:
            return order == "bb" || order == "bt";
        case Scan::Progressive:
            break;
    }
    return order == "progressive";
}

void ExpectScan(const std::filesystem::path& file, const ScannedRaster& raster) {
    EXPECT_EQ(ShownFields(file), raster.shown);
    EXPECT_EQ(test::MediaInfo(file, "Video;%ScanOrder%"), raster.order);
    const std::string order = test::Streams(file, "video", false).at(0).at("field_order");
    const bool topCodedFirst = raster.height == 480 && file.extension() == ".mxf";  // FFmpeg's map of 480 lines
    EXPECT_TRUE(IsOrder(order, raster) || (topCodedFirst && order == "tb")) << order;
}

// One raster of either order in every codec, all of them in the one that a format prefers and in that of HD alone.
bool IsTried(const lineup::FileFormat& format, std::string_view codec, const ScannedRaster& raster) {
    const auto& offered = *lineup::FindVideoCodec(codec);
    const bool hasFields = offered.interlaced && raster.height % offered.interlacedHeightStep == 0;
    if (offered.minHeight > 576) {
        return hasFields && raster.height == offered.minHeight;
    }
    return hasFields && (codec == format.videoCodecs.front() || &raster < &kScannedRasters.at(2));
}

TEST(ScanFiles, SayWhichFieldIsFirstInEveryContainerAndCodecThatHasFields) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& format : lineup::FileFormats()) {
        for (const auto codec : format.videoCodecs) {
            for (const ScannedRaster& raster : kScannedRasters) {
                if (!IsTried(format, codec, raster)) {
                    continue;
                }
                SCOPED_TRACE(fmt::format(".{} {} {}", format.extension, codec, raster.name));
                const auto settings = Settings(folder / fmt::format("a.{}", format.extension), raster, codec);
                EXPECT_EQ(Export(clip, settings).video->scan, raster.scan);
                ExpectScan(settings.target, raster);
            }
        }
    }
}

// The options that people have are those that work.
TEST(ScanFiles, AreRefusedInEveryCodecWithoutFields) {
    const lineup::Clip clip = test::OpenClip();
    for (const auto& format : lineup::FileFormats()) {
        for (const auto codec : format.videoCodecs) {
            auto settings = Settings(fmt::format("a.{}", format.extension), kScannedRasters.at(3), codec);
            if (lineup::FindVideoCodec(codec)->interlaced) {
                EXPECT_NO_THROW(CheckExport(clip, settings)) << codec;
            } else {
                EXPECT_THROW(CheckExport(clip, settings), lineup::UsageError) << codec;
            }
        }
    }
}

TEST(ScanFiles, AreRefusedWhereFieldsWouldBeTooManyOrUneven) {
    const lineup::Clip clip = test::OpenClip();
    auto settings = Settings("a.mov", kScannedRasters.front(), "prores");
    settings.frameRate = {50, 1};
    EXPECT_THROW(CheckExport(clip, settings), lineup::UsageError);
    settings = Settings("a.mov", kScannedRasters.at(3), "dnxhd");
    settings.frameRate = {24, 1};  // of which DNxHD has frames alone
    EXPECT_THROW(CheckExport(clip, settings), lineup::UsageError);
    settings.scan = Scan::Progressive;
    EXPECT_NO_THROW(CheckExport(clip, settings));
    settings = Settings("a.mp4", kScannedRasters.at(2), "h264");  // 243 lines a field
    EXPECT_THROW(CheckExport(clip, settings), lineup::UsageError);
}

// Each field of an interlaced 4:2:0 picture has chroma of its own: the chroma line of the upper field lies a quarter of
// a frame line above the middle, so at a sharp edge the two fields differ.
TEST(ScanFiles, HaveTheChromaOfTheirOwnFields) {
    const TemporaryFolder folder;
    const auto chroma = [&](Scan scan) {
        auto settings = Settings(folder / "a.mp4", kScannedRasters.front(), "h264");
        settings.scan = scan;
        Export(test::OpenClip(), settings);
        return test::Decode(settings.target, "v:0", "-frames:v 1 -f rawvideo -vf extractplanes=u");
    };
    const auto fields = chroma(Scan::TopFieldFirst);
    const auto whole = chroma(Scan::Progressive);
    ASSERT_EQ(fields.size(), whole.size());
    EXPECT_NE(fields, whole);
    // Away from edges they are the same: half way down the bars, a line each.
    const std::size_t line = 100UL * 360;
    for (std::size_t x = 10; x < 350; x += 51) {
        EXPECT_NEAR(fields.at(line + x), whole.at(line + x), 1) << x;
    }
}

}  // namespace
