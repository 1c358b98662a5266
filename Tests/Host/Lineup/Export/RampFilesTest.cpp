#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

/// The luma and chroma of a file's first picture in 4:2:2, plane by plane.
class Picture422 {
public:
    Picture422(const std::filesystem::path& file, int bits)
        : Picture422(file, bits, bits == 8 ? "yuv422p" : "yuv422p10le") {}
    Picture422(const std::filesystem::path& file, int bits, const std::string& format) : mBits(bits) {
        mBytes = test::Decode(file, "v:0", "-frames:v 1 -f rawvideo -pix_fmt " + format);
    }

    [[nodiscard]] int At(int plane, int x, int y) const {
        const int width = plane == 0 ? kWidth : kWidth / 2;
        const std::ptrdiff_t before =
            plane == 0 ? 0 : std::ptrdiff_t{kWidth} * kHeight + std::ptrdiff_t{plane - 1} * kHeight * kWidth / 2;
        const auto place = static_cast<std::size_t>(before + std::ptrdiff_t{y} * width + x);
        return mBits == 8 ? mBytes.at(place) : mBytes.at(2 * place) | mBytes.at(2 * place + 1) << 8;
    }

    static constexpr int kWidth = 1920;
    static constexpr int kHeight = 1080;

private:
    int mBits;
    std::vector<std::uint8_t> mBytes;
};

struct Codec {
    const char* file;
    const char* name;
    int bits;
    int mostAtEdges;  ///< codes that a value is off beside another patch; 0: everything is as it was made
    int mostFall;     ///< of the ramp, in the lines whose blocks hold the patches below it
    lineup::Scan scan = lineup::Scan::Progressive;
};

constexpr std::array<Codec, 9> kCodecs = {{
    {"a.mkv", "ffv1", 10, 0, 0},
    {"a.mov", "uyvy422", 8, 0, 0},
    {"a.mov", "prores-hq", 10, 2, 1},
    {"a.mov", "prores", 10, 2, 1},
    {"a.mov", "prores", 10, 3, 2, lineup::Scan::TopFieldFirst},
    {"a.mov", "dnxhr-hqx", 10, 2, 2},
    {"a.mov", "dnxhd", 10, 13, 7},
    {"a.mov", "dnxhd", 10, 11, 7, lineup::Scan::TopFieldFirst},
    {"a.mxf", "mpeg2-422", 8, 1, 1},
}};

// The card at 1920x1080: the ramp, and the middles of all other patches.
constexpr int kRampLeft = 445;
constexpr int kRampRight = 1473;
constexpr int kRampTop = 720;
constexpr int kRampBottom = 810;
constexpr std::array<std::array<int, 2>, 28> kMiddles = {
    {{120, 314},  {342, 314},  {548, 314},  {754, 314},  {959, 314},  {1165, 314}, {1371, 314},
     {1577, 314}, {1800, 314}, {120, 674},  {342, 674},  {1062, 674}, {1800, 674}, {120, 765},
     {342, 765},  {1576, 765}, {1800, 765}, {120, 945},  {394, 945},  {754, 945},  {1045, 945},
     {1165, 945}, {1233, 945}, {1302, 945}, {1371, 945}, {1439, 945}, {1576, 945}, {1800, 945}}};

lineup::ExportSettings HdFrame(const std::filesystem::path& target, const char* codec) {
    auto settings = test::SmallExport(target, 1);
    settings.width = Picture422::kWidth;
    settings.height = Picture422::kHeight;
    settings.videoCodec = codec;
    settings.overwrite = true;
    settings.disk = lineup::Disk::DoNotWait;
    return settings;
}

/// The steepest fall from one column to the next, in lines of the ramp from `top` to `bottom`.
int SteepestFall(const Picture422& picture, int top, int bottom) {
    int fall = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = kRampLeft + 1; x < kRampRight; ++x) {
            fall = std::max(fall, picture.At(0, x - 1, y) - picture.At(0, x, y));
        }
    }
    return fall;
}

int FurthestOff(const Picture422& picture, const Picture422& exact) {
    int furthest = 0;
    for (int plane = 0; plane < 3; ++plane) {
        for (int y = 0; y < Picture422::kHeight; ++y) {
            for (int x = 0; x < (plane == 0 ? Picture422::kWidth : Picture422::kWidth / 2); ++x) {
                furthest = std::max(furthest, std::abs(picture.At(plane, x, y) - exact.At(plane, x, y)));
            }
        }
    }
    return furthest;
}

/// The lines at the ramp's end that share blocks of eight lines with the patches below it: a field's blocks hold every
/// other line.
int LastLines(const Codec& codec) {
    return codec.scan == lineup::Scan::Progressive ? 2 : 10;
}

// Beside the uncompressed picture: each patch is the code itself, the ramp never falls, but in its last lines.
TEST(RampFiles, NeverFallInAnyCodecOf422AndPatchesAreExact) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    Export(clip, HdFrame(folder / "exact8.mov", "uyvy422"));
    Export(clip, HdFrame(folder / "exact10.mov", "v210"));
    const Picture422 exact8(folder / "exact8.mov", 8);
    const Picture422 exact10(folder / "exact10.mov", 10);
    EXPECT_EQ(SteepestFall(exact10, kRampTop, kRampBottom), 0);
    for (const Codec& codec : kCodecs) {
        SCOPED_TRACE(codec.name);
        auto settings = HdFrame(folder / codec.file, codec.name);
        settings.scan = codec.scan;
        Export(clip, settings);
        const Picture422 picture(folder / codec.file, codec.bits);
        const Picture422& exact = codec.bits == 8 ? exact8 : exact10;
        for (const auto& [x, y] : kMiddles) {
            EXPECT_EQ(picture.At(0, x, y), exact.At(0, x, y)) << x << ", " << y;
            EXPECT_EQ(picture.At(1, x / 2, y), exact.At(1, x / 2, y)) << x << ", " << y;
            EXPECT_EQ(picture.At(2, x / 2, y), exact.At(2, x / 2, y)) << x << ", " << y;
        }
        EXPECT_EQ(SteepestFall(picture, kRampTop, kRampBottom - LastLines(codec)), 0);
        EXPECT_EQ(SteepestFall(picture, kRampTop, kRampBottom), codec.mostFall);
        EXPECT_EQ(FurthestOff(picture, exact), codec.mostAtEdges);
    }
}

// In full range, 255 codes to 1028 columns. Blocks have their means in whole codes. The encoder's transform is another
// one on x86-64, and ends with other codes there.
TEST(RampFiles, OfMotionJpegFallByWhatTheProcessorsTransformCosts) {
#if defined(__x86_64__)
    constexpr int kMostFall = 1;
#else
    constexpr int kMostFall = 2;
#endif
    const test::TemporaryFolder folder;
    Export(test::OpenClip(), HdFrame(folder / "a.mov", "mjpeg"));
    const Picture422 picture(folder / "a.mov", 8, "yuvj422p");
    EXPECT_EQ(SteepestFall(picture, kRampTop, kRampBottom), kMostFall);
    double furthest = 0;
    for (int y = kRampTop; y < kRampBottom; ++y) {
        for (int x = kRampLeft; x < kRampRight; ++x) {
            furthest = std::max(furthest, std::abs(picture.At(0, x, y) - 255.0 * (x - kRampLeft) / 1028));
        }
    }
    EXPECT_LT(furthest, 1.5);
}

}  // namespace
