#include <lineup/Exporter.h>
#include <lineup/FormatTable.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <sched.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct Case {
    const lineup::FileFormat* format;
    std::string_view codec;
};

// Every codec of every kind of movie.
std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const auto& format : lineup::FileFormats()) {
        for (const auto codec : format.videoCodecs) {
            if (!format.audioCodecs.empty()) {
                cases.push_back({&format, codec});
            }
        }
    }
    return cases;
}

// Identifiers of MXF must be unique in the world.
bool NoTwoAreAlike(const Case& made) {
    return made.format->extension == "mxf";
}

// What another program prints of a file's frames or packets: a line each, without those about the file.
std::vector<std::string> Lines(const std::vector<std::uint8_t>& output) {
    std::istringstream stream(std::string(output.begin(), output.end()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (!line.starts_with('#')) {
            lines.push_back(line);
        }
    }
    return lines;
}

// Each packet as another program sees it: time, duration, size and sum.
std::vector<std::string> PacketSums(const std::filesystem::path& file) {
    return Lines(test::Decode(file, "v:0", "-c copy -f framemd5"));
}

// The decoded frames, and the packets.
std::vector<std::string> FrameSums(const std::filesystem::path& file) {
    auto sums = Lines(test::Decode(file, "v:0", "-f framemd5"));
    std::ranges::copy(PacketSums(file), std::back_inserter(sums));
    return sums;
}

// Sums of a whole file say nothing to a reader: the first that differ, or nothing.
std::string FirstDifference(const std::vector<std::string>& once, const std::vector<std::string>& every) {
    const auto [here, there] = std::ranges::mismatch(once, every);
    const std::string end = "the end";
    if (here == once.end() && there == every.end()) {
        return "";
    }
    return "number " + std::to_string(here - once.begin()) + ": " + (here == once.end() ? end : *here) +
           " of one encoded frame, " + (there == every.end() ? end : *there) + " of every frame encoded";
}

// The time code in each picture.
std::vector<std::string> PictureTimecodes(const std::filesystem::path& file) {
    std::vector<std::string> texts;
    for (const auto& frame : test::Frames(file, "frame_tags=timecode")) {
        texts.push_back(frame.value("/tags/timecode"_json_pointer, "none"));
    }
    return texts;
}

class EncodeOnce : public testing::TestWithParam<Case> {};

// A file of one encoded frame repeated is the file of every frame encoded.
TEST_P(EncodeOnce, IsTheSameFileAsEveryFrameEncoded) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    auto settings = test::SmallExport(folder / ("a." + std::string(GetParam().format->extension)), 57);
    settings.width = 256;
    settings.height = 120;
    test::FitTo(GetParam().codec, settings);
    settings.frames = settings.width > 256 ? 7 : 57;
    settings.videoCodec = GetParam().codec;
    if (GetParam().format->holdsTimecode) {
        settings.timecode = lineup::Timecode("09:59:59:20", settings.frameRate);
    }
    Export(clip, settings);
    const auto once = test::ReadBytes(settings.target);
    const auto sums = FrameSums(settings.target);
    settings.encodeEveryFrame = true;
    settings.overwrite = true;
    Export(clip, settings);
    EXPECT_EQ(FirstDifference(sums, FrameSums(settings.target)), "");
    EXPECT_EQ(sums.size(), static_cast<std::size_t>(2 * settings.frames));
    if (!NoTwoAreAlike(GetParam())) {
        EXPECT_TRUE(once == test::ReadBytes(settings.target));
    }
}

// Keeps this thread, and those that it starts, on one processor.
class OneProcessor {
public:
    OneProcessor() {
        sched_getaffinity(0, sizeof mBefore, &mBefore);
        cpu_set_t one{};
        CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
        if (sched_setaffinity(0, sizeof one, &one) != 0) {
            throw std::runtime_error("cannot keep to one processor");
        }
    }
    ~OneProcessor() { sched_setaffinity(0, sizeof mBefore, &mBefore); }
    OneProcessor(const OneProcessor&) = delete;
    OneProcessor& operator=(const OneProcessor&) = delete;

private:
    cpu_set_t mBefore{};
};

// Encoders share a picture among as many threads as there are processors.
TEST_P(EncodeOnce, IsTheSameFileOnAnyNumberOfProcessors) {
    if (NoTwoAreAlike(GetParam())) {
        GTEST_SKIP() << "no two files of this format are alike";
    }
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    auto settings = test::SmallExport(folder / ("a." + std::string(GetParam().format->extension)), 2);
    settings.width = 640;
    settings.height = 360;
    test::FitTo(GetParam().codec, settings);
    settings.videoCodec = GetParam().codec;
    Export(clip, settings);
    const auto onAll = test::ReadBytes(settings.target);
    settings.overwrite = true;
    const OneProcessor one;
    Export(clip, settings);
    EXPECT_TRUE(onAll == test::ReadBytes(settings.target));
}

INSTANTIATE_TEST_SUITE_P(Codecs, EncodeOnce, testing::ValuesIn(Cases()), [](const auto& row) {
    std::string name = std::string(row.param.format->extension) + "_" + std::string(row.param.codec);
    std::ranges::replace(name, '-', '_');
    return name;
});

// The same with the time codes that MPEG-2 pictures carry, where drop frame leaves numbers out, a day ends, and
// where there is none.
TEST(EncodeOnceOfMpeg2, CountsTheTimecodeOfEachPictureAsTheEncoderDoes) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    const auto write = [&](lineup::Rational rate, const char* timecode, bool everyFrame) {
        auto settings = test::SmallExport(folder / "a.mxf", 40);
        settings.frameRate = rate;
        if (*timecode != '\0') {
            settings.timecode = lineup::Timecode(timecode, rate);
        }
        settings.encodeEveryFrame = everyFrame;
        settings.overwrite = true;
        Export(clip, settings);
        return std::pair(PictureTimecodes(settings.target), PacketSums(settings.target));
    };
    for (const auto& [rate, timecode] : {std::pair(lineup::Rational{30000, 1001}, "00:00:59;20"),
                                         {{30000, 1001}, "00:09:59;20"},
                                         {{30000, 1001}, "00:00:59:20"},
                                         {{60000, 1001}, "00:00:59;50"},
                                         {{24000, 1001}, "23:59:59:10"},
                                         {{30000, 1001}, "23:59:59;20"},
                                         {{50, 1}, ""}}) {
        SCOPED_TRACE(std::string("from ") + timecode);
        const auto once = write(rate, timecode, false);
        const auto every = write(rate, timecode, true);
        EXPECT_EQ(once.first.size(), 40U);
        EXPECT_NE(once.first.front(), "none");
        EXPECT_EQ(FirstDifference(once.first, every.first), "");
        EXPECT_EQ(FirstDifference(once.second, every.second), "");
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

TEST(Export, OfMxfMakesIdentifiersThatNoOtherFileHas) {
    const test::TemporaryFolder folder;
    Export(test::OpenClip(), test::SmallExport(folder / "a.mxf", 2));
    Export(test::OpenClip(), test::SmallExport(folder / "b.mxf", 2));
    EXPECT_FALSE(test::ReadBytes(folder / "a.mxf") == test::ReadBytes(folder / "b.mxf"));
    EXPECT_EQ(FrameSums(folder / "a.mxf"), FrameSums(folder / "b.mxf"));
}

TEST(Export, OfTheSameSettingsMakesTheSameBytes) {
    const test::TemporaryFolder folder;
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.wav", "a.png"}) {
        auto settings = test::SmallExport(folder / name, 5);
        settings.overwrite = true;
        Export(test::OpenClip(), settings);
        const auto first = test::ReadBytes(settings.target);
        Export(test::OpenClip(), settings);
        EXPECT_TRUE(first == test::ReadBytes(settings.target)) << name;
    }
}

}  // namespace
