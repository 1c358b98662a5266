#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace {

using nlohmann::json;
using test::TemporaryFolder;

struct Bar {
    const char* name;
    double x;  // its middle, in fractions of the width and height
    double y;
    std::array<int, 3> ycc;  // 8-bit codes
};

// The HD card's bars in BT.709: the standard's own numbers for 75 % and 100 % bars.
constexpr std::array<Bar, 14> kHdBars = {{
    {"40 % grey", 0.06, 0.3, {104, 128, 128}},
    {"white", 0.18, 0.3, {180, 128, 128}},
    {"yellow", 0.285, 0.3, {168, 44, 136}},
    {"cyan", 0.393, 0.3, {145, 147, 44}},
    {"green", 0.5, 0.3, {133, 63, 52}},
    {"magenta", 0.607, 0.3, {63, 193, 204}},
    {"red", 0.714, 0.3, {51, 109, 212}},
    {"blue", 0.82, 0.3, {28, 212, 120}},
    {"100 % yellow", 0.06, 0.71, {219, 16, 138}},
    {"100 % white", 0.4, 0.9, {235, 128, 128}},
    {"black", 0.2, 0.9, {16, 128, 128}},
    {"below black", 0.607, 0.9, {12, 128, 128}},
    {"4 above black", 0.678, 0.9, {20, 128, 128}},
    {"9 above black", 0.75, 0.9, {25, 128, 128}},
}};

// The SD card's, in BT.601.
constexpr std::array<Bar, 10> kSdBars = {{
    {"white", 0.07, 0.3, {180, 128, 128}},
    {"yellow", 0.21, 0.3, {161, 44, 142}},
    {"cyan", 0.36, 0.3, {131, 156, 44}},
    {"green", 0.5, 0.3, {112, 72, 58}},
    {"magenta", 0.64, 0.3, {84, 184, 198}},
    {"red", 0.785, 0.3, {65, 100, 212}},
    {"blue", 0.93, 0.3, {35, 212, 114}},
    {"100 % white", 0.27, 0.9, {235, 128, 128}},
    {"below black", 0.7385, 0.9, {7, 128, 128}},
    {"above black", 0.833, 0.9, {25, 128, 128}},
}};

// How a pixel format lays its planes out.
struct Layout {
    const char* name;
    int widthShift, heightShift, bits;
    const char* conversion = "";  // takes the planes of a packed format apart
};
constexpr std::array<Layout, 5> kLayouts = {{{"yuv422p10le", 1, 0, 10},
                                             {"yuv444p12le", 0, 0, 12},
                                             {"yuv422p", 1, 0, 8},
                                             {"yuv420p", 1, 1, 8},
                                             {"uyvy422", 1, 0, 8, " -pix_fmt yuv422p"}}};

// A file's first frame, as it was decoded.
class Frame {
public:
    explicit Frame(const std::filesystem::path& file) {
        const json stream = test::Streams(file, "video").at(0);
        mWidth = stream.at("width");
        mHeight = stream.at("height");
        mLayout = std::ranges::find(kLayouts, stream.at("pix_fmt").get<std::string>(), &Layout::name);
        mBytes = test::Decode(file, "v:0", std::string("-frames:v 1 -f rawvideo") + mLayout->conversion);
    }

    // In 8-bit codes, with what a deeper format says between them.
    [[nodiscard]] double At(int plane, double x, double y) const {
        const int bytes = mLayout->bits > 8 ? 2 : 1;
        const int chromaWidth = mWidth >> mLayout->widthShift;
        const int chromaHeight = mHeight >> mLayout->heightShift;
        const int width = plane == 0 ? mWidth : chromaWidth;
        const int height = plane == 0 ? mHeight : chromaHeight;
        const int before = plane == 0 ? 0 : mWidth * mHeight + (plane - 1) * chromaWidth * chromaHeight;
        const int place = before + static_cast<int>(y * height) * width + static_cast<int>(x * width);
        const auto offset = static_cast<std::size_t>(place * bytes);
        const int value = mBytes.at(offset) + (bytes == 2 ? 256 * mBytes.at(offset + 1) : 0);
        return static_cast<double>(value) / (1 << (mLayout->bits - 8));
    }

private:
    std::vector<std::uint8_t> mBytes;
    int mWidth = 0;
    int mHeight = 0;
    const Layout* mLayout = nullptr;
};

void ExpectBars(const std::filesystem::path& file, std::span<const Bar> bars) {
    const Frame frame(file);
    for (const Bar& bar : bars) {
        for (int plane = 0; plane < 3; ++plane) {
            EXPECT_NEAR(frame.At(plane, bar.x, bar.y), bar.ycc.at(static_cast<std::size_t>(plane)), 1)
                << file << ' ' << bar.name << " plane " << plane;
        }
    }
}

lineup::ExportSettings Picture(const std::filesystem::path& target, int width, int height, const char* codec = "") {
    auto settings = test::SmallExport(target, 1);
    settings.width = width;
    settings.height = height;
    settings.videoCodec = codec;
    settings.overwrite = true;
    return settings;
}

TEST(PictureFiles, OfHdShowTheStandard709BarsInEveryLegalRangeCodec) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const auto& [name, codec] : {std::pair("a.mov", "prores-hq"),
                                      {"a.mov", "prores"},
                                      {"a.mov", "prores-4444"},
                                      {"a.mov", "dnxhr-hqx"},
                                      {"a.mov", "v210"},
                                      {"a.mov", "uyvy422"},
                                      {"a.mkv", "uyvy422"},
                                      {"a.mov", "h264"},
                                      {"a.mkv", "ffv1"},
                                      {"a.mp4", "h264"},
                                      {"a.mxf", "mpeg2-422"}}) {
        SCOPED_TRACE(codec);
        Export(clip, Picture(folder / name, 1280, 720, codec));
        ExpectBars(folder / name, kHdBars);
    }
}

TEST(PictureFiles, OfSdKeepThe601Bars) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.mxf"}) {
        Export(clip, Picture(folder / name, 720, 576));
        ExpectBars(folder / name, kSdBars);
    }
}

TEST(PictureFiles, ShowTheHdCardInSdWhenToldToAndKeep601) {
    const TemporaryFolder folder;
    auto settings = Picture(folder / "a.mkv", 720, 576);
    settings.card = lineup::Card::HD;
    Export(test::OpenClip(), settings);
    constexpr std::array<Bar, 2> kYellow = {
        {{"yellow", 0.285, 0.3, {161, 44, 142}}, {"40 % grey", 0.06, 0.3, {104, 128, 128}}}};
    ExpectBars(folder / "a.mkv", kYellow);
}

TEST(PictureFiles, ShowTheSdCardInHdWhenToldToAndMakeIt709) {
    const TemporaryFolder folder;
    auto settings = Picture(folder / "a.mkv", 1280, 720);
    settings.card = lineup::Card::SD;
    Export(test::OpenClip(), settings);
    constexpr std::array<Bar, 2> kBars = {
        {{"yellow", 0.21, 0.3, {168, 44, 136}}, {"below black", 0.7385, 0.9, {7, 128, 128}}}};
    ExpectBars(folder / "a.mkv", kBars);
}

struct Tags {
    const char *matrix, *primaries, *transfer;
};

void ExpectTags(const std::filesystem::path& file, const Tags& tags) {
    const json stream = test::Streams(file, "video").at(0);
    EXPECT_EQ(stream.value("color_space", ""), tags.matrix) << file;
    EXPECT_EQ(stream.value("color_primaries", ""), tags.primaries) << file;
    EXPECT_EQ(stream.value("color_transfer", ""), tags.transfer) << file;
    const bool isProRes = stream.at("codec_name") == "prores";
    EXPECT_EQ(stream.value("color_range", ""), isProRes ? test::WaysOfFfmpeg().rangeOfProRes : "tv") << file;
    EXPECT_EQ(stream.value("field_order", ""), "progressive") << file;
}

TEST(PictureFiles, SayWhatTheirColoursMean) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.mxf"}) {
        Export(clip, Picture(folder / name, 1280, 720));
        ExpectTags(folder / name, {"bt709", "bt709", "bt709"});
        Export(clip, Picture(folder / name, 720, 486));
        ExpectTags(folder / name, {"smpte170m", "smpte170m", "bt709"});
        Export(clip, Picture(folder / name, 720, 576));
        ExpectTags(folder / name, {"smpte170m", "bt470bg", "bt709"});
    }
}

// The frame's own header, beside the file's: primaries, curve, matrix, in that order after the size.
TEST(PictureFiles, OfProresSayTheSameInEachFrame) {
    const TemporaryFolder folder;
    Export(test::OpenClip(), Picture(folder / "a.mov", 720, 576));
    const auto bytes = test::ReadBytes(folder / "a.mov");
    const auto head = std::ranges::search(bytes, std::string_view("icpf"));
    ASSERT_GE(bytes.end() - head.end(), 17);
    EXPECT_EQ(std::vector(head.end() + 14, head.end() + 17), (std::vector<std::uint8_t>{5, 1, 6}));
}

// QuickTime has no number for R'G'B' that has no matrix.
TEST(PictureFiles, OfPngInAMovieAreTaggedWithNumbersThatQuickTimeHas) {
    const TemporaryFolder folder;
    Export(test::OpenClip(), Picture(folder / "a.mov", 192, 108, "png"));
    const auto bytes = test::ReadBytes(folder / "a.mov");
    const auto colours = std::ranges::search(bytes, std::string_view("nclc"));
    ASSERT_GE(bytes.end() - colours.end(), 6);
    EXPECT_EQ(std::vector(colours.end(), colours.end() + 6), (std::vector<std::uint8_t>{0, 1, 0, 13, 0, 1}));
}

TEST(PictureFiles, OfJpegAreFullRange601AsJpegDecodersExpect) {
    const TemporaryFolder folder;
    Export(test::OpenClip(), Picture(folder / "a.mov", 1280, 720, "mjpeg"));
    const json stream = test::Streams(folder / "a.mov", "video").at(0);
    EXPECT_EQ(stream.at("color_range"), "pc");
    EXPECT_EQ(stream.at("color_space"), "bt470bg");
    const auto rgb = test::Decode(folder / "a.mov", "v:0", "-frames:v 1 -f rawvideo -pix_fmt rgb24");
    const std::size_t yellow = (200 * 1280 + 365) * 3;
    EXPECT_NEAR(rgb.at(yellow), 191, 3);
    EXPECT_NEAR(rgb.at(yellow + 1), 191, 3);
    EXPECT_NEAR(rgb.at(yellow + 2), 0, 3);
}

TEST(PictureFiles, CarryTheCodecTheyWereAskedFor) {
    const TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    const auto codec = [&](const char* name, const char* wanted) {
        Export(clip, Picture(folder / name, 256, 120, wanted));
        const json stream = test::Streams(folder / name, "video").at(0);
        return stream.at("codec_name").get<std::string>() + " " + stream.value("profile", "-") + " " +
               stream.at("pix_fmt").get<std::string>();
    };
    EXPECT_EQ(codec("a.mov", ""), "prores HQ yuv422p10le");
    EXPECT_EQ(codec("a.mov", "prores"), "prores Standard yuv422p10le");
    EXPECT_EQ(codec("a.mov", "prores-4444"), "prores 4444 yuv444p12le");  // the decoder's depth
    EXPECT_EQ(codec("a.mov", "dnxhr-hqx"), "dnxhd DNXHR HQX yuv422p10le");
    EXPECT_EQ(codec("a.mov", "v210"), "v210 - yuv422p10le");
    EXPECT_EQ(codec("a.mov", "uyvy422"), "rawvideo - uyvy422");
    EXPECT_EQ(codec("a.mov", "png"), "png - rgb24");
    EXPECT_EQ(codec("a.mkv", ""), "ffv1 - yuv422p10le");
    EXPECT_EQ(codec("a.mp4", ""), "h264 High yuv420p");
    EXPECT_EQ(codec("a.mxf", ""), "mpeg2video 4:2:2 yuv422p");
}

}  // namespace
