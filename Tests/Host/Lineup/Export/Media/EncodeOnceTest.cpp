#include "Host/Lineup/Export/Exporter.h"
#include "Host/Lineup/Export/FormatTable.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Where frames stand alone, a file of one encoded frame repeated is the file of every frame encoded.
TEST(Export, OfOneEncodedFrameIsTheSameFileAsOfEveryFrameEncoded) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& format : lineup::FileFormats()) {
        for (const auto name : format.videoCodecs) {
            if (!lineup::FindVideoCodec(name)->framesStandAlone || format.audioCodecs.empty()) {
                continue;
            }
            auto settings = test::SmallExport(folder / ("a." + std::string(format.extension)), 5);
            settings.width = 256;
            settings.height = 120;
            settings.videoCodec = name;
            settings.overwrite = true;
            Export(clip, settings);
            const auto once = test::ReadFile(settings.target);
            settings.encodeEveryFrame = true;
            Export(clip, settings);
            EXPECT_TRUE(once == test::ReadFile(settings.target)) << format.extension << ' ' << name;
        }
    }
}

// The same, seen through a decoder.
TEST(Export, OfOneEncodedFrameDecodesToTheSamePictureEveryTime) {
    const test::TemporaryFolder folder;
    auto settings = test::SmallExport(folder / "a.mkv", 4);
    Export(test::OpenClip(), settings);
    const auto frames = test::Decode(settings.target, "v:0", "-f rawvideo");
    const std::size_t frameBytes = 192 * 108 * 2 * 2;
    ASSERT_EQ(frames.size(), 4 * frameBytes);
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_TRUE(std::equal(frames.begin(), frames.begin() + frameBytes,
                               frames.begin() + static_cast<std::ptrdiff_t>(i * frameBytes)));
    }
}

TEST(Export, OfTheSameSettingsMakesTheSameBytes) {
    const test::TemporaryFolder folder;
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.wav", "a.png"}) {
        auto settings = test::SmallExport(folder / name, 5);
        settings.overwrite = true;
        Export(test::OpenClip(), settings);
        const auto first = test::ReadFile(settings.target);
        Export(test::OpenClip(), settings);
        EXPECT_TRUE(first == test::ReadFile(settings.target)) << name;
    }
}

}  // namespace
