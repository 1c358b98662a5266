#include <lineup/Importer.h>
#include "Host/Interface/Frame/PixelFormats.h"
#include "Tests/Bridges/MLT/FillCounter.h"
#include "Tests/Bridges/MLT/Framework.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <set>

namespace {

// A picture: planes Y, Cb, Cr, chroma for every second column.
template <class Value>
struct Planes422 {
    int width = 0;
    std::array<std::vector<Value>, 3> planes;

    bool operator==(const Planes422&) const = default;
};
using Codes = Planes422<int>;
using Values = Planes422<double>;

struct Image {
    mlt_image_format format = mlt_image_none;
    Codes codes;
};

Codes FromYuyv(const std::uint8_t* bytes, int width, int height) {
    Codes codes{width, {}};
    for (int i = 0; i < width * height; ++i) {
        codes.planes[0].push_back(bytes[2 * i]);
        const bool second = i % width % 2 != 0;
        codes.planes.at(second ? 2 : 1).push_back(bytes[2 * i + 1]);
    }
    return codes;
}

Codes FromPlanar16(const std::uint16_t* values, int width, int height) {
    Codes codes{width, {}};
    for (std::size_t plane = 0; plane < 3; ++plane) {
        const int count = (plane == 0 ? width : width / 2) * height;
        codes.planes.at(plane).assign(values, values + count);
        values += count;
    }
    return codes;
}

Image ImageOf(mlt_frame_s& frame, mlt_image_format format, int width, int height) {
    Image image{format, {}};
    std::uint8_t* bytes = nullptr;
    if (mlt_frame_get_image(&frame, &bytes, &image.format, &width, &height, 0) != 0) {
        return {};
    }
    image.codes = image.format == mlt_image_yuv422p16
                      ? FromPlanar16(reinterpret_cast<const std::uint16_t*>(bytes), width, height)
                      : FromYuyv(bytes, width, height);
    return image;
}

// The card's own numbers, of BT.601.
Image FirstImage(const test::PropertyList& properties, mlt_image_format format, int width, int height) {
    const auto profile = test::MakeProfile(test::kPal, width, height);
    profile->colorspace = 601;
    const auto clip = test::MakeClip(*profile, properties);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    return ImageOf(*frame, format, 0, 0);
}

// The plug-in's frame in 4:2:2, before it is rounded to codes, `scale` to a code of 8 bits: BT.601 legal range,
// chroma taken from the pixel and both its neighbours as 1, 2, 1.
Values Expected(std::uint32_t pixelFormat, int width, int height, int scale) {
    static const lineup::Importer importer(TEST_BUNDLE);
    zelcore::FrameBuffer buffer(width, height, pixelFormat);
    importer.DrawFrame(buffer);
    const auto component = [&](int line, int x, int index) {
        x = std::clamp(x, 0, width - 1);
        const double value = pixelFormat == kPixelFormat_VUYA_32f
                                 ? static_cast<double>(reinterpret_cast<const float*>(buffer.Line(line))[4 * x + index])
                                 : buffer.Line(line)[4 * x + index];
        if (pixelFormat == kPixelFormat_VUYA_8u) {
            return value * scale;
        }
        return (index == 2 ? 16 + 219 * value : 128 + 224 * value) * scale;
    };
    Values values{width, {}};
    for (int line = 0; line < height; ++line) {
        for (int x = 0; x < width; ++x) {
            values.planes[0].push_back(component(line, x, 2));
        }
        for (int x = 0; x < width; x += 2) {
            for (const int index : {1, 0}) {
                const double sum =
                    component(line, x - 1, index) + 2 * component(line, x, index) + component(line, x + 1, index);
                values.planes.at(index == 1 ? 1 : 2).push_back(sum / 4);
            }
        }
    }
    return values;
}

// How far the furthest code is from its value; 0.5 where each is the nearest. Huge when the shapes differ.
double Furthest(const Codes& codes, const Values& values) {
    double furthest = 0;
    for (std::size_t plane = 0; plane < 3; ++plane) {
        if (codes.planes.at(plane).size() != values.planes.at(plane).size()) {
            return 1e9;
        }
        for (std::size_t i = 0; i < codes.planes.at(plane).size(); ++i) {
            furthest = std::max(furthest, std::abs(codes.planes.at(plane)[i] - values.planes.at(plane)[i]));
        }
    }
    return furthest;
}

// Half a code, and what single precision adds to it.
constexpr double kNearest = 0.502;

TEST(Picture, IsTheHdCardInAnHdProfile) {
    const Image image = FirstImage({}, mlt_image_yuv422, 1920, 1080);
    EXPECT_EQ(image.format, mlt_image_yuv422);
    EXPECT_LE(Furthest(image.codes, Expected(kPixelFormat_VUYA_32f, 1920, 1080, 1)), kNearest);
}

TEST(Picture, IsTheSdCardInAnSdProfile) {
    const Image image = FirstImage({}, mlt_image_yuv422, 720, 576);
    EXPECT_LE(Furthest(image.codes, Expected(kPixelFormat_VUYA_8u, 720, 576, 1)), kNearest);
}

TEST(Picture, IsTheCardThatIsChosen) {
    EXPECT_LE(Furthest(FirstImage({{"card", "sd"}}, mlt_image_yuv422, 1280, 720).codes,
                       Expected(kPixelFormat_VUYA_8u, 1280, 720, 1)),
              kNearest);
    EXPECT_LE(Furthest(FirstImage({{"card", "hd"}}, mlt_image_yuv422, 720, 486).codes,
                       Expected(kPixelFormat_VUYA_32f, 720, 486, 1)),
              kNearest);
}

// The ramp has 1028 steps: eight bits show 220 of them, sixteen show them all.
TEST(Picture, InSixteenBitsKeepsEveryStepOfTheRamp) {
    const Image image = FirstImage({}, mlt_image_yuv422p16, 1920, 1080);
    EXPECT_EQ(image.format, mlt_image_yuv422p16);
    EXPECT_LE(Furthest(image.codes, Expected(kPixelFormat_VUYA_32f, 1920, 1080, 256)), kNearest);
    const auto line = image.codes.planes[0].begin() + 1920 * 750;
    EXPECT_EQ(std::set<int>(line + 445, line + 1473).size(), 1028U);
}

// The ramp's 1028 steps lie on 876 codes of ten bits.
TEST(Picture, HasNothingBelowTheDepthThatIsChosen) {
    const Image image = FirstImage({{"depth", "10"}}, mlt_image_yuv422p16, 1920, 1080);
    Codes codes = image.codes;
    for (auto& plane : codes.planes) {
        for (int& code : plane) {
            ASSERT_EQ(code % 64, 0);
            code /= 64;
        }
    }
    EXPECT_LE(Furthest(codes, Expected(kPixelFormat_VUYA_32f, 1920, 1080, 4)), kNearest);
    const auto line = codes.planes[0].begin() + 1920 * 750;
    EXPECT_EQ(std::set<int>(line + 445, line + 1473).size(), 876U);
    EXPECT_EQ(FirstImage({{"depth", "10"}}, mlt_image_yuv422, 1920, 1080).codes,
              FirstImage({}, mlt_image_yuv422, 1920, 1080).codes);
}

TEST(Picture, KeepsWhatLiesBelowBlackAndAboveWhite) {
    const auto luma = [](const Image& image) {
        const auto& plane = image.codes.planes[0];
        return std::set<int>(plane.begin(), plane.end());
    };
    EXPECT_EQ(luma(FirstImage({{"card", "hd"}}, mlt_image_yuv422, 1920, 1080)).count(12), 1U);
    EXPECT_EQ(luma(FirstImage({{"card", "sd"}}, mlt_image_yuv422, 720, 576)).count(7), 1U);
    EXPECT_EQ(luma(FirstImage({{"card", "sd"}}, mlt_image_yuv422p16, 720, 576)).count(7 * 256), 1U);
}

TEST(Picture, HasTheSizeThatIsAskedFor) {
    const auto profile = test::MakeProfile(test::kPal);
    profile->colorspace = 601;
    const auto clip = test::MakeClip(*profile);
    for (const auto& [width, height] : {std::pair{960, 540}, {1280, 720}, {641, 361}, {2, 2}, {1, 1}}) {
        const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
        const Image image = ImageOf(*frame, mlt_image_yuv422, width, height);
        EXPECT_EQ(image.codes.width, width);
        const auto format = height < 720 ? kPixelFormat_VUYA_8u : kPixelFormat_VUYA_32f;
        const Values expected = Expected(format, width, height, 1);
        ASSERT_EQ(image.codes.planes[0].size(), expected.planes[0].size());
        for (std::size_t i = 0; i < expected.planes[0].size(); ++i) {
            ASSERT_NEAR(image.codes.planes[0][i], expected.planes[0][i], kNearest) << width << "x" << height;
        }
        // Every second pixel has Cb, the last of an odd width too.
        ASSERT_EQ(image.codes.planes[1].size(), expected.planes[1].size());
        for (std::size_t i = 0; i < expected.planes[1].size(); ++i) {
            ASSERT_NEAR(image.codes.planes[1][i], expected.planes[1][i], kNearest) << width << "x" << height;
        }
    }
}

TEST(Picture, SaysThatItIsBt601InLegalRangeAndProgressiveWhenToldToBe) {
    const auto profile = test::MakeProfile(test::kPal);  // a 709 profile
    const auto clip = test::MakeClip(*profile, {{"matrix", "601"}});
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    ImageOf(*frame, mlt_image_yuv422, 0, 0);
    const mlt_properties properties = MLT_FRAME_PROPERTIES(frame.get());
    EXPECT_EQ(mlt_properties_get_int(properties, "colorspace"), 601);
    EXPECT_EQ(mlt_properties_get_int(properties, "full_range"), 0);
    EXPECT_EQ(mlt_properties_get_int(properties, "progressive"), 1);
    EXPECT_EQ(mlt_properties_get_double(properties, "aspect_ratio"), 1.0);
}

// 75 % yellow is 161, 44, 142 in BT.601 and 168, 44, 136 in BT.709.
TEST(Picture, IsInTheMatrixOfTheProfile) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    const Image image = ImageOf(*frame, mlt_image_yuv422, 0, 0);
    EXPECT_EQ(mlt_properties_get_int(MLT_FRAME_PROPERTIES(frame.get()), "colorspace"), 709);
    const std::size_t yellow = 1920 * 10 + 540;
    EXPECT_EQ(image.codes.planes[0][yellow], 168);
    EXPECT_EQ(image.codes.planes[1][yellow / 2], 44);
    EXPECT_EQ(image.codes.planes[2][yellow / 2], 136);
    const auto& luma = image.codes.planes[0];
    EXPECT_NE(std::find(luma.begin(), luma.end(), 12), luma.end()) << "nothing is left below black";

    profile->colorspace = 601;
    const auto next = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    EXPECT_EQ(ImageOf(*next, mlt_image_yuv422, 0, 0).codes.planes[0][yellow], 161);
    EXPECT_EQ(mlt_properties_get_int(MLT_FRAME_PROPERTIES(next.get()), "colorspace"), 601);
}

TEST(Picture, IsDrawnOnceASize) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    const auto draw = [&](int width, int height) {
        const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
        return ImageOf(*frame, mlt_image_yuv422, width, height).codes;
    };
    const int before = test::FillCount();
    const Codes first = draw(1920, 1080);
    const int forOne = test::FillCount() - before;
    EXPECT_GT(forOne, 28);  // a fill a bar, and one a column of the ramp
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(draw(1920, 1080), first);
    }
    EXPECT_EQ(test::FillCount() - before, forOne);
    draw(1280, 720);
    EXPECT_GT(test::FillCount() - before, forOne);
}

TEST(Picture, OfAFrameIsItsOwn) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    const Codes before = ImageOf(*frame, mlt_image_yuv422, 64, 36).codes;
    std::uint8_t* bytes = nullptr;
    mlt_image_format format = mlt_image_yuv422;
    int width = 64;
    int height = 36;
    mlt_frame_get_image(frame.get(), &bytes, &format, &width, &height, 1);
    std::fill_n(bytes, 64 * 36 * 2, 0);
    const auto next = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    EXPECT_EQ(ImageOf(*next, mlt_image_yuv422, 64, 36).codes, before);
}

TEST(Picture, OfASizeThatNoFrameHasIsRefusedWithALine) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    const test::LogCapture log;
    ImageOf(*frame, mlt_image_yuv422, 40000, 2);
    EXPECT_NE(log.Text().find("barsandtone: "), std::string::npos) << log.Text();
}

}  // namespace
