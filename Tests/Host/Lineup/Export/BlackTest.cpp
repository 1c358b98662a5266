#include <lineup/UsageError.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

// Black and silence behind the clip.
namespace {

constexpr std::size_t kWidth = 256;
constexpr std::size_t kHeight = 144;

lineup::ExportSettings ThreeAndTwo(const std::filesystem::path& target, const char* codec) {
    auto settings = test::SmallExport(target, 3);
    settings.width = kWidth;
    settings.height = kHeight;
    settings.videoCodec = codec;
    settings.blackFrames = 2;
    return settings;
}

// The brightest and the darkest of a frame's 8-bit luma.
std::pair<int, int> Extremes(const std::vector<std::uint8_t>& luma, std::size_t frame) {
    const auto begin = luma.begin() + static_cast<std::ptrdiff_t>(frame * kWidth * kHeight);
    const auto [darkest, brightest] = std::minmax_element(begin, begin + static_cast<std::ptrdiff_t>(kWidth * kHeight));
    return {*darkest, *brightest};
}

class Black : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(Black, FollowsTheClipInPictureAndSound) {
    const auto& [name, codec] = GetParam();
    const test::TemporaryFolder folder;
    const auto report = Export(test::OpenClip(1), ThreeAndTwo(folder / name, codec));
    EXPECT_EQ(report.frames, 5);
    EXPECT_EQ(report.blackFrames, 2);
    EXPECT_EQ(report.blackSamples, 3840);
    const auto luma = test::Decode(folder / name, "v:0", "-vf scale=out_range=full,format=gray -f rawvideo");
    ASSERT_EQ(luma.size(), 5 * kWidth * kHeight);
    for (std::size_t frame = 0; frame < 5; ++frame) {
        const auto [darkest, brightest] = Extremes(luma, frame);
        EXPECT_GE(brightest, frame < 3 ? 150 : 0) << frame;
        EXPECT_LE(brightest, frame < 3 ? 255 : 1) << frame;
        EXPECT_LE(darkest, 1) << frame;
    }
    const auto samples = test::DecodeFloats(folder / name, "a:0");
    ASSERT_GE(samples.size(), 9600U);
    const auto loudest = [&](std::size_t first, std::size_t end) {
        return std::abs(*std::max_element(samples.begin() + static_cast<std::ptrdiff_t>(first),
                                          samples.begin() + static_cast<std::ptrdiff_t>(end)));
    };
    EXPECT_GT(loudest(5664, 5760), 0.2F);  // up to the last cycle before
    EXPECT_LE(loudest(5760 + (std::string(codec) == "h264" ? 1024 : 0), 9600), 1e-3F);
}

INSTANTIATE_TEST_SUITE_P(Codecs, Black,
                         testing::Values(std::pair("a.mov", "prores-hq"), std::pair("a.mov", "v210"),
                                         std::pair("a.mov", "uyvy422"), std::pair("a.mov", "png"),
                                         std::pair("a.mov", "mjpeg"), std::pair("a.mov", "dnxhr-hqx"),
                                         std::pair("a.mkv", "ffv1"), std::pair("a.mp4", "h264")),
                         [](const auto& row) {
                             std::string name = row.param.second;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST(BlackFiles, AreTheSameWhereEveryFrameIsEncoded) {
    const test::TemporaryFolder folder;
    auto settings = ThreeAndTwo(folder / "a.mov", "prores");
    Export(test::OpenClip(), settings);
    settings.target = folder / "b.mov";
    settings.encodeEveryFrame = true;
    Export(test::OpenClip(), settings);
    EXPECT_TRUE(test::ReadBytes(folder / "a.mov") == test::ReadBytes(folder / "b.mov"));
}

TEST(BlackFiles, OfSoundAloneEndInSilence) {
    const test::TemporaryFolder folder;
    auto settings = test::SmallExport(folder / "a.wav", 1000);
    settings.blackSamples = 500;
    const auto report = Export(test::OpenClip(1), settings);
    EXPECT_EQ(report.samples, 1500);
    EXPECT_EQ(report.blackSamples, 500);
    const auto samples = test::DecodeFloats(folder / "a.wav", "a:0");
    ASSERT_EQ(samples.size(), 1500U);
    EXPECT_NE(samples[999], 0.0F);
    EXPECT_TRUE(std::all_of(samples.begin() + 1000, samples.end(), [](float sample) { return sample == 0.0F; }));
}

TEST(BlackFiles, AreNoStillPictures) {
    auto settings = test::SmallExport("a.png", 1);
    settings.blackFrames = 1;
    EXPECT_THROW(CheckExport(test::OpenClip(), settings), lineup::UsageError);
}

}  // namespace
