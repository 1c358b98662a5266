// The picture in every format, to the bit.
#include <lineup/Exporter.h>
#include "Host/Lineup/Picture/ConvertedPicture.h"
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <gst/video/video.h>
#include <sstream>

namespace {

using testing::HasSubstr;

// Whole cells of no format's chroma but 4:4:4's, and no whole group of v210's.
constexpr int kWidth = 61;
constexpr int kHeight = 37;

const lineup::Clip& TheClip() {
    static const lineup::Clip clip(std::make_shared<const lineup::Importer>(TEST_BUNDLE));
    return clip;
}

test::Played FrameOf(const std::string& caps, const std::string& properties = "") {
    const auto played = test::PlayOnce("lineupvideosrc num-buffers=1 " + properties + " ! video/x-raw," + caps);
    EXPECT_EQ(played.error, "") << caps;
    return played;
}

/// A frame as the framework itself reads it: alpha and three values of 16 bits a pixel, or of 8.
class Unpacked {
public:
    Unpacked(const test::Played& played, const GstVideoInfo& info) : mInfo(info) {
        const GstVideoFormatInfo& whole = *gst_video_format_get_info(info.finfo->unpack_format);
        mIsWide = whole.depth[0] > 8;
        std::string bytes = played.buffers.at(0).bytes;
        std::array<gpointer, GST_VIDEO_MAX_PLANES> data{};
        for (std::size_t plane = 0; plane < data.size(); ++plane) {
            data.at(plane) = bytes.data() + info.offset[plane];
        }
        const std::size_t lineValues = Size(info.width) * 4;
        mValues.resize(lineValues * Size(info.height));
        std::vector<std::uint16_t> line(lineValues);
        for (int y = 0; y < info.height; ++y) {
            info.finfo->unpack_func(info.finfo, GST_VIDEO_PACK_FLAG_TRUNCATE_RANGE, line.data(), data.data(),
                                    info.stride, 0, y, info.width);
            for (std::size_t i = 0; i < lineValues; ++i) {
                const auto* const narrow = reinterpret_cast<const std::uint8_t*>(line.data());
                mValues[Size(y) * lineValues + i] = mIsWide ? line[i] : narrow[i];
            }
        }
    }

    /// Component 3 is alpha. In the upper bits of 16 where the format has more than 8.
    [[nodiscard]] int Value(std::size_t component, std::size_t x, std::size_t y) const {
        const std::size_t place = component == 3 ? 0 : component + 1;
        return mValues[(y * Size(mInfo.width) + x) * 4 + place];
    }
    [[nodiscard]] int Bits() const { return mIsWide ? 16 : 8; }

    static std::size_t Size(int size) { return static_cast<std::size_t>(size); }

private:
    GstVideoInfo mInfo;
    bool mIsWide = false;
    std::vector<int> mValues;
};

// The first pixel that is not as converted, as text. Where there is alpha it is opaque.
std::string Difference(const Unpacked& frame, const GstVideoInfo& info, const lineup::ConvertedPicture& picture) {
    const GstVideoFormatInfo& format = *info.finfo;
    for (std::size_t c = 0; c < format.n_components; ++c) {
        const auto bits = static_cast<int>(format.depth[c]);
        for (std::size_t y = 0; y < kHeight; ++y) {
            for (std::size_t x = 0; x < kWidth; ++x) {
                const int value =
                    c == 3 ? (1 << bits) - 1 : picture.Value(c, y >> format.h_sub[c], x >> format.w_sub[c]);
                if (frame.Value(c, x, y) != value << (frame.Bits() - bits)) {
                    return "component " + std::to_string(c) + " at " + std::to_string(x) + ", " + std::to_string(y) +
                           ": " + std::to_string(frame.Value(c, x, y)) + " instead of " + std::to_string(value);
                }
            }
        }
    }
    return {};
}

TEST(Picture, IsTheCardInEveryFormat) {
    const auto formats = test::NamesIn(*test::TemplateOf("lineupvideosrc"), "format");
    EXPECT_THAT(formats, testing::IsSupersetOf({"UYVY", "v210", "I420", "Y42B", "I422_10LE", "AYUV64", "RGB"}));
    const auto picture = lineup::ReadPicture(TheClip(), kWidth, kHeight, lineup::Card::Auto);
    for (const std::string& name : formats) {
        const auto played = FrameOf("format=" + name + ",width=61,height=37");
        ASSERT_EQ(played.buffers.size(), 1U) << name;
        GstVideoInfo info{};
        gst_video_info_set_format(&info, gst_video_format_from_string(name.c_str()), kWidth, kHeight);
        ASSERT_EQ(played.buffers[0].bytes.size(), info.size) << name;
        const bool isRgb = GST_VIDEO_INFO_IS_RGB(&info) != FALSE;
        const lineup::ConvertedPicture converted(
            picture, {.coding = isRgb ? lineup::ColourCoding::Rgb : lineup::ColourCoding::Ycc601,
                      .bits = static_cast<int>(info.finfo->depth[0]),
                      .fullRange = isRgb,
                      .subsampleWidth = static_cast<int>(info.finfo->w_sub[1]),
                      .subsampleHeight = static_cast<int>(info.finfo->h_sub[1])});
        EXPECT_EQ(Difference(Unpacked(played, info), info, converted), "") << name;
    }
}

TEST(Picture, HasChromaOfEachFieldsOwnLinesIn420) {
    const auto progressive = FrameOf("format=I420,width=64,height=40");
    const auto played = FrameOf("format=I420,width=64,height=40,interlace-mode=interleaved");
    EXPECT_NE(played.buffers.at(0).bytes, progressive.buffers.at(0).bytes);
    const lineup::ConvertedPicture fields(lineup::ReadPicture(TheClip(), 64, 40, lineup::Card::Auto),
                                          {.coding = lineup::ColourCoding::Ycc601,
                                           .bits = 8,
                                           .subsampleWidth = 1,
                                           .subsampleHeight = 1,
                                           .interlaced = true});
    for (std::size_t line = 0; line < 20; ++line) {
        const auto* const expected = reinterpret_cast<const char*>(fields.Line(1, line));
        EXPECT_EQ(played.buffers[0].bytes.substr(64 * 40 + line * 32, 32), std::string(expected, 32)) << line;
    }
}

class RenderedPicture : public test::TestFolder {
protected:
    // Whether the frame's bytes stand in a movie that was rendered with this codec.
    [[nodiscard]] bool Holds(const std::string& codec, int width, int height, lineup::Scan scan,
                             const test::Played& frame) const {
        lineup::ExportSettings settings;
        settings.target = Folder() / "card.mov";
        settings.width = width;
        settings.height = height;
        settings.scan = scan;
        settings.frames = 1;
        settings.videoCodec = codec;
        settings.overwrite = true;
        (void)lineup::Export(TheClip(), settings);
        std::stringstream file;
        file << std::ifstream(settings.target, std::ios::binary).rdbuf();
        return file.str().find(frame.buffers.at(0).bytes) != std::string::npos;
    }
};

TEST_F(RenderedPicture, IsTheSame) {
    struct Row {
        const char* format;
        const char* codec;
    };
    for (const Row& row : {Row{"UYVY", "uyvy422"}, Row{"v210", "v210"}}) {
        const std::string format = std::string("format=") + row.format;
        EXPECT_TRUE(Holds(row.codec, 1920, 1080, lineup::Scan::Progressive, FrameOf(format))) << row.format;
        EXPECT_TRUE(Holds(row.codec, 720, 576, lineup::Scan::TopFieldFirst,
                          FrameOf(format + ",width=720,height=576,interlace-mode=interleaved")))
            << row.format;
        EXPECT_FALSE(Holds(row.codec, 1920, 1080, lineup::Scan::Progressive, FrameOf(format, "card=sd"))) << row.format;
    }
}

TEST(Picture, SaysWhatItsValuesAre) {
    EXPECT_THAT(FrameOf("width=1920").caps, HasSubstr("colorimetry=(string)bt709, chroma-site=(string)mpeg2"));
    EXPECT_THAT(FrameOf("width=720,height=486").caps, HasSubstr("colorimetry=(string)bt601"));
    // The primaries of 625 lines are their own.
    EXPECT_THAT(FrameOf("width=720,height=576").caps, HasSubstr("colorimetry=(string)2:4:16:3"));
    EXPECT_THAT(FrameOf("format=RGB").caps, HasSubstr("colorimetry=(string)sRGB"));
}

// 75 % yellow, from the first line of the picture on: in 8 bits 168, 44, 136 by BT.709 and 161, 44, 142 by BT.601.
TEST(Picture, HasTheMatrixAndTheRangeThatAreAskedFor) {
    struct Row {
        const char* caps;
        std::array<int, 3> yellow;
    };
    for (const Row& row : {Row{"colorimetry=bt709", {168, 44, 136}}, Row{"colorimetry=bt601", {161, 44, 142}},
                           Row{"colorimetry=1:4:16:3", {169, 32, 144}}}) {
        const auto played = FrameOf(std::string("format=AYUV,width=1920,height=1080,") + row.caps);
        const std::string pixel = played.buffers.at(0).bytes.substr(4 * 600, 4);
        EXPECT_EQ(static_cast<std::uint8_t>(pixel[1]), row.yellow[0]) << row.caps;
        EXPECT_EQ(static_cast<std::uint8_t>(pixel[2]), row.yellow[1]) << row.caps;
        EXPECT_EQ(static_cast<std::uint8_t>(pixel[3]), row.yellow[2]) << row.caps;
    }
}

TEST(Picture, SaysTheShapeOfItsPixels) {
    EXPECT_THAT(FrameOf("width=1920,height=1080").caps, HasSubstr("pixel-aspect-ratio=(fraction)1/1"));
    EXPECT_THAT(FrameOf("width=720,height=576").caps, HasSubstr("pixel-aspect-ratio=(fraction)12/11"));
    EXPECT_THAT(FrameOf("width=720,height=576,pixel-aspect-ratio=16/11").caps,
                HasSubstr("pixel-aspect-ratio=(fraction)16/11"));
}

TEST(Picture, SaysWhichFieldIsFirst) {
    const auto top = FrameOf("format=UYVY,width=1920,height=1080,interlace-mode=interleaved");
    EXPECT_THAT(top.caps, HasSubstr("field-order=(string)top-field-first"));
    EXPECT_EQ(top.buffers.at(0).flags & GST_VIDEO_BUFFER_FLAG_TFF, guint{GST_VIDEO_BUFFER_FLAG_TFF});
    const auto bottom = FrameOf("format=UYVY,width=720,height=486,interlace-mode=interleaved");
    EXPECT_THAT(bottom.caps, HasSubstr("field-order=(string)bottom-field-first"));
    EXPECT_EQ(bottom.buffers.at(0).flags & GST_VIDEO_BUFFER_FLAG_TFF, 0U);
    EXPECT_EQ(bottom.buffers.at(0).flags & GST_VIDEO_BUFFER_FLAG_INTERLACED, guint{GST_VIDEO_BUFFER_FLAG_INTERLACED});
    EXPECT_THAT(FrameOf("width=720,height=486,interlace-mode=interleaved,field-order=top-field-first").caps,
                HasSubstr("field-order=(string)top-field-first"));
}

}  // namespace
