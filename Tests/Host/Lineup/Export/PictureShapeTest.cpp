#include <lineup/FormatTable.h>
#include "Host/Lineup/Values/PictureShape.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace {

using lineup::PictureAspect;
using lineup::PictureShape;

struct ShapeCase {
    int width;
    int height;
    PictureAspect aspect;
    PictureShape shape;
};

constexpr std::array<ShapeCase, 15> kShapeCases = {{
    {720, 576, PictureAspect::Auto, {{12, 11}, 704, 576}},
    {704, 576, PictureAspect::Auto, {{12, 11}, 704, 576}},
    {720, 480, PictureAspect::Auto, {{10, 11}, 704, 480}},
    {704, 480, PictureAspect::Auto, {{10, 11}, 704, 480}},
    {720, 486, PictureAspect::Auto, {{10, 11}, 704, 480}},
    {1440, 1080, PictureAspect::Auto, {{4, 3}, 1440, 1080}},
    {1280, 1080, PictureAspect::Auto, {{3, 2}, 1280, 1080}},
    {1920, 1080, PictureAspect::Auto, {{1, 1}, 1920, 1080}},
    {720, 576, PictureAspect::FourByThree, {{12, 11}, 704, 576}},
    {720, 576, PictureAspect::SixteenByNine, {{16, 11}, 704, 576}},
    {720, 480, PictureAspect::SixteenByNine, {{40, 33}, 704, 480}},
    {720, 576, PictureAspect::SquarePixels, {{1, 1}, 720, 576}},
    {1440, 1080, PictureAspect::FourByThree, {{1, 1}, 1440, 1080}},
    {960, 720, PictureAspect::SixteenByNine, {{4, 3}, 960, 720}},
    {8192, 8192, PictureAspect::SixteenByNine, {{16, 9}, 8192, 8192}},
}};

TEST(PictureShapes, AreThoseOfTelevisionUnlessSomebodySaysOtherwise) {
    for (const ShapeCase& row : kShapeCases) {
        EXPECT_EQ(lineup::ShapeOf(row.width, row.height, row.aspect), row.shape) << row.width << 'x' << row.height;
    }
}

/// The four numbers that the atom "clap" begins its fractions with: width, height, and the centre's offsets.
std::array<std::uint32_t, 4> CleanAperture(const std::vector<std::uint8_t>& file) {
    constexpr std::string_view kType = "clap";
    const auto type = std::ranges::search(file, kType);
    std::array<std::uint32_t, 4> numbers{};
    if (file.end() - type.end() < 32) {
        return numbers;
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto* const from = &*type.end() + 8 * i;
        numbers.at(i) = std::uint32_t{from[0]} << 24 | std::uint32_t{from[1]} << 16 | std::uint32_t{from[2]} << 8 |
                        std::uint32_t{from[3]};
    }
    return numbers;
}

lineup::ExportSettings OneFrame(const std::filesystem::path& target, const ShapeCase& row, std::string_view codec) {
    auto settings = test::SmallExport(target, 1);
    settings.width = row.width;
    settings.height = row.height;
    settings.aspect = row.aspect;
    settings.videoCodec = codec;
    settings.overwrite = true;
    return settings;
}

// In every movie and codec: 16:9 on the raster of 625 lines, which has a clean part, and square pixels.
TEST(PictureShapes, AreInTheHeadOfEveryMovie) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const std::string_view extension : {"mov", "mp4", "mkv"}) {
        for (const auto codec : lineup::FindFileFormat(fmt::format("a.{}", extension))->videoCodecs) {
            if (lineup::FindVideoCodec(codec)->minHeight > kShapeCases.at(9).height) {
                continue;  // HD alone, which has square pixels
            }
            SCOPED_TRACE(fmt::format(".{} {}", extension, codec));
            const auto settings = OneFrame(folder / fmt::format("a.{}", extension), kShapeCases.at(9), codec);
            EXPECT_EQ(Export(clip, settings).video->sampleAspect, (lineup::Rational{16, 11}));
            EXPECT_EQ(test::Streams(settings.target, "video", false).at(0).at("sample_aspect_ratio"), "16:11");
            if (extension != "mkv") {
                EXPECT_EQ(CleanAperture(test::ReadBytes(settings.target)),
                          (std::array<std::uint32_t, 4>{704, 576, 0, 0}));
            }
        }
    }
}

/// Width and height in MPEG-2's sequence_display_extension: after its start code, the number of the extension (4 bits),
/// video_format (3), colour_description (1), three bytes of colours, width (14), a one, height (14).
std::pair<unsigned, unsigned> DisplaySize(const std::vector<std::uint8_t>& file) {
    for (std::size_t i = 0; i + 12 < file.size(); ++i) {
        if (file[i] == 0 && file[i + 1] == 0 && file[i + 2] == 1 && file[i + 3] == 0xB5 && file[i + 4] >> 4U == 2) {
            const std::uint64_t bits = std::uint64_t{file[i + 8]} << 24U | std::uint64_t{file[i + 9]} << 16U |
                                       std::uint64_t{file[i + 10]} << 8U | file[i + 11];
            return {static_cast<unsigned>(bits >> 18U), static_cast<unsigned>(bits >> 3U & 0x3FFFU)};
        }
    }
    return {0, 0};
}

// MPEG-2 says the shape of the part that is shown, and has 4:3 and 16:9 among the few it can.
TEST(PictureShapes, OfMpeg2AreThatOfTheCleanPart) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& [row, shape] :
         {std::pair(kShapeCases.at(0), "4:3"), {kShapeCases.at(2), "4:3"}, {kShapeCases.at(9), "16:9"}}) {
        const auto settings = OneFrame(folder / "a.mxf", row, "");
        Export(clip, settings);
        EXPECT_EQ(test::Streams(settings.target, "video", false).at(0).at("display_aspect_ratio"), shape);
        EXPECT_EQ(DisplaySize(test::ReadBytes(settings.target)),
                  std::pair(static_cast<unsigned>(row.shape.cleanWidth), static_cast<unsigned>(row.shape.cleanHeight)));
    }
}

}  // namespace
