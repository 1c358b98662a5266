#include <lineup/StillPicture.h>
#include <lineup/UsageError.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

using test::TemporaryFolder;

using Rgb = std::array<int, 3>;

class PngPicture {
public:
    PngPicture(const std::filesystem::path& file, int width)
        : mBytes(test::Decode(file, "v:0", "-f rawvideo -pix_fmt rgb24")), mWidth(width) {}

    [[nodiscard]] Rgb At(int x, int y) const {
        const auto offset = static_cast<std::size_t>(3 * (y * mWidth + x));
        return {mBytes.at(offset), mBytes.at(offset + 1), mBytes.at(offset + 2)};
    }

private:
    std::vector<std::uint8_t> mBytes;
    int mWidth;
};

TEST(StillPicture, ShowsTheHdCardInFullRangeRgb) {
    const TemporaryFolder folder;
    lineup::WritePng(test::OpenClip(), 1280, 720, lineup::Card::Auto, folder / "a.png", false);
    const PngPicture picture(folder / "a.png", 1280);
    // 75 % bars: 191.25 of 255, within what 8-bit Y'CbCr numbers leave of them.
    const auto near = [&picture](int x, const Rgb& wanted) {
        const Rgb got = picture.At(x, 200);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(got.at(i), wanted.at(i), 2) << "at " << x << ", component " << i;
        }
    };
    near(228, {191, 191, 191});
    near(365, {191, 191, 0});
    near(503, {0, 191, 191});
    near(640, {0, 191, 0});
    near(777, {191, 0, 191});
    near(914, {191, 0, 0});
    near(1051, {0, 0, 191});
    EXPECT_EQ(picture.At(777, 650), (Rgb{0, 0, 0}));        // below black
    EXPECT_EQ(picture.At(500, 650), (Rgb{255, 255, 255}));  // 100 % white
    EXPECT_EQ(picture.At(868, 650), (Rgb{5, 5, 5}));        // Y 20: 4 / 219 * 255 = 4.66
}

/// The content of a PNG file's first chunk of a type; empty without one.
std::vector<std::uint8_t> Chunk(const std::filesystem::path& file, std::string_view type) {
    const auto bytes = test::ReadBytes(file);
    for (std::size_t at = 8; at + 12 <= bytes.size();) {
        std::size_t length = 0;
        for (std::size_t i = at; i < at + 4; ++i) {
            length = length << 8U | bytes[i];
        }
        const auto name = bytes.begin() + static_cast<std::ptrdiff_t>(at + 4);
        if (std::equal(type.begin(), type.end(), name)) {
            return {name + 4, name + 4 + static_cast<std::ptrdiff_t>(length)};
        }
        at += length + 12;
    }
    return {};
}

// A reader that goes by the gamma shows what a screen does: 40 % grey as 102, whether it knows sRGB or not.
TEST(StillPicture, SaysThatItIsSrgbOfEitherCard) {
    const TemporaryFolder folder;
    for (const int height : {108, 576, 720}) {
        lineup::WritePng(test::OpenClip(), 192, height, lineup::Card::Auto, folder / "a.png", true);
        EXPECT_EQ(Chunk(folder / "a.png", "sRGB").size(), 1U);
        EXPECT_EQ(Chunk(folder / "a.png", "gAMA"), (std::vector<std::uint8_t>{0, 0, 45455 / 256, 45455 % 256}));
    }
}

TEST(StillPicture, SaysHowWideAPixelIs) {
    const TemporaryFolder folder;
    lineup::WritePng(test::OpenClip(), 720, 576, lineup::Card::Auto, folder / "a.png", true);
    EXPECT_EQ(Chunk(folder / "a.png", "pHYs"), (std::vector<std::uint8_t>{0, 0, 0, 12, 0, 0, 0, 11, 0}));
    lineup::WritePng(test::OpenClip(), 720, 576, lineup::Card::Auto, folder / "a.png", true,
                     lineup::PictureAspect::SixteenByNine);
    EXPECT_EQ(Chunk(folder / "a.png", "pHYs"), (std::vector<std::uint8_t>{0, 0, 0, 16, 0, 0, 0, 11, 0}));
}

TEST(StillPicture, ShowsTheSdCardBelow720Lines) {
    const TemporaryFolder folder;
    lineup::WritePng(test::OpenClip(), 720, 576, lineup::Card::Auto, folder / "a.png", false);
    const PngPicture picture(folder / "a.png", 720);
    const Rgb white = picture.At(50, 100);  // the leftmost bar: 75 % white, where the HD card has 40 % grey
    EXPECT_EQ(white, (Rgb{191, 191, 191}));
}

TEST(StillPicture, ShowsTheCardItWasToldTo) {
    const TemporaryFolder folder;
    lineup::WritePng(test::OpenClip(), 192, 108, lineup::Card::HD, folder / "a.png", false);
    EXPECT_EQ(PngPicture(folder / "a.png", 192).At(10, 20), (Rgb{102, 102, 102}));  // 88 / 219 * 255 = 102.47
}

TEST(StillPicture, TakesOddSizes) {
    const TemporaryFolder folder;
    lineup::WritePng(test::OpenClip(), 171, 97, lineup::Card::Auto, folder / "a.png", false);
    const auto stream = test::Streams(folder / "a.png", "video").at(0);
    EXPECT_EQ(stream.at("width"), 171);
    EXPECT_EQ(stream.at("height"), 97);
    EXPECT_EQ(stream.at("pix_fmt"), "rgb24");
}

TEST(StillPicture, RefusesSizesThatCannotBe) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    EXPECT_THROW(lineup::WritePng(clip, 0, 10, lineup::Card::Auto, folder / "a.png", false), lineup::UsageError);
    EXPECT_THROW(lineup::WritePng(clip, 10, 8193, lineup::Card::Auto, folder / "a.png", false), lineup::UsageError);
    EXPECT_THAT(folder.Names(), testing::ElementsAre());
}

TEST(StillPicture, IsWhatAPngTargetExports) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    const auto report = Export(clip, test::SmallExport(folder / "a.png", 1));
    lineup::WritePng(clip, 192, 108, lineup::Card::Auto, folder / "b.png", false);
    EXPECT_EQ(test::ReadBytes(folder / "a.png"), test::ReadBytes(folder / "b.png"));
    EXPECT_EQ(report.container, "png");
    EXPECT_EQ(report.frames, 1);
    EXPECT_EQ(report.samples, 0);
    EXPECT_TRUE(report.audio.empty());
    EXPECT_EQ(report.video->colour, "rgb");
}

}  // namespace
