#include <lineup/AudioReader.h>
#include "Host/Lineup/Export/Samples/Dither.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"
#include "Host/Lineup/Export/Wave/WaveHeader.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace {

using lineup::SampleFormat;
using lineup::WaveFormat;
using lineup::WaveHeader;

std::uint64_t Number(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t count) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        number |= std::uint64_t{bytes.at(at + i)} << (8 * i);
    }
    return number;
}

std::string Text(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t count) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.begin() + static_cast<std::ptrdiff_t>(at + count)};
}

// The place of a chunk's content.
std::size_t Content(const std::vector<std::uint8_t>& bytes, const std::string& chunk) {
    std::size_t at = 12;
    while (at + 8 <= bytes.size() && Text(bytes, at, 4) != chunk) {
        at += 8 + Number(bytes, at + 4, 4);
    }
    return at + 8;
}

// Stereo of 24 bits: 772 bytes of header, 6 bytes a frame; the first 8 bytes are not counted.
constexpr std::uint64_t kHeader = 772;
constexpr std::uint64_t kLongestRiff = (0xFFFFFFFFULL + 8 - kHeader) / 6;

TEST(WaveHeader, IsRiffAsLongAs32BitsCanCountTheFile) {
    const auto header = WaveHeader({.frames = static_cast<std::int64_t>(kLongestRiff)});
    EXPECT_EQ(header.size(), kHeader);
    EXPECT_EQ(Text(header, 0, 4), "RIFF");
    EXPECT_EQ(Number(header, 4, 4), kHeader + 6 * kLongestRiff - 8);
    EXPECT_EQ(Text(header, 12, 4), "JUNK");
    EXPECT_EQ(Number(header, header.size() - 4, 4), 6 * kLongestRiff);
}

TEST(WaveHeader, IsRf64OneSampleLater) {
    const auto header = WaveHeader({.frames = static_cast<std::int64_t>(kLongestRiff + 1)});
    EXPECT_EQ(header.size(), kHeader);
    EXPECT_EQ(Text(header, 0, 4), "RF64");
    EXPECT_EQ(Number(header, 4, 4), 0xFFFFFFFFU);
    EXPECT_EQ(Text(header, 12, 4), "ds64");
    EXPECT_EQ(Number(header, 20, 8), kHeader + 6 * (kLongestRiff + 1) - 8);
    EXPECT_EQ(Number(header, 28, 8), 6 * (kLongestRiff + 1));
    EXPECT_EQ(Number(header, 36, 8), kLongestRiff + 1);
    EXPECT_EQ(Number(header, header.size() - 4, 4), 0xFFFFFFFFU);
}

TEST(WaveHeader, CountsThePaddingOfOddDataInTheFileAndNotInTheChunk) {
    const auto header = WaveHeader({.channels = 1, .frames = 3});
    EXPECT_EQ(Number(header, header.size() - 4, 4), 9U);
    EXPECT_EQ(Number(header, 4, 4), header.size() + 10 - 8);
}

TEST(WaveHeader, HoldsTheTimeReferenceOfTheBroadcastExtension) {
    const auto header = WaveHeader({.frames = 1, .timeReference = 0x123456789});
    const std::size_t extension = Content(header, "bext");
    EXPECT_EQ(Text(header, extension + 256, 13), "Bars and Tone");
    EXPECT_EQ(Number(header, extension + 338, 8), 0x123456789U);
    EXPECT_EQ(Number(header, extension + 346, 2), 1U);
}

TEST(WaveHeader, SaysWhatWasMadeWhenAndHow) {
    const auto header = WaveHeader({.frames = 1, .description = "1000 Hz", .date = "2026-01-31", .time = "23:59:59"});
    const std::size_t extension = Content(header, "bext");
    EXPECT_EQ(Text(header, extension, 8), std::string("1000 Hz\0", 8));
    EXPECT_EQ(Text(header, extension + 320, 18), "2026-01-3123:59:59");
    const std::string history = "A=PCM,F=48000,W=24,M=stereo,T=Bars and Tone\r\n";
    EXPECT_EQ(Text(header, extension + 602, history.size()), history);
    EXPECT_EQ(Number(header, extension - 4, 4), 602 + history.size() + 1);
}

TEST(WaveHeader, KeepsOfALongDescriptionWhatThereIsRoomFor) {
    const auto header = WaveHeader({.frames = 1, .description = std::string(300, 'x')});
    EXPECT_EQ(Text(header, Content(header, "bext") + 250, 19), "xxxxxxBars and Tone");
}

TEST(WaveHeader, CountsTheSamplesOfWhateverIsNotPlainPcm) {
    EXPECT_EQ(Number(WaveHeader({.frames = 7}), Content(WaveHeader({.frames = 7}), "fact"), 4), 7U);
    const auto plain = WaveHeader({.samples = SampleFormat::S16, .frames = 7});
    EXPECT_GT(Content(plain, "fact"), plain.size());
}

// A file of holes: the header says how long it is, and another program believes it.
TEST(WaveHeader, OfRf64IsReadByOtherPrograms) {
    const test::TemporaryFolder folder;
    constexpr std::int64_t kTenHours = 36000LL * 48000;
    const auto header = WaveHeader({.frames = kTenHours, .timeReference = 48000});
    std::ofstream(folder / "a.wav", std::ios::binary)
        .write(reinterpret_cast<const char*>(header.data()), static_cast<std::streamsize>(header.size()));
    std::filesystem::resize_file(folder / "a.wav", header.size() + 6 * kTenHours);
    const auto stream = test::Streams(folder / "a.wav", "audio", false).at(0);
    EXPECT_EQ(stream.at("duration_ts"), kTenHours);
    EXPECT_EQ(stream.at("codec_name"), "pcm_s24le");
}

// The coding history of a file of ours, as an argument of a shell.
std::string History(const std::string& file) {
    const auto bytes = test::ReadBytes(file);
    const std::size_t extension = Content(bytes, "bext");
    return "'" + Text(bytes, extension + 602, Number(bytes, extension - 4, 4) - 602 - 1) + "'";
}

// The media library counts samples of what is not PCM alone, not of its extensible form.
std::vector<std::uint8_t> WithoutFact(std::vector<std::uint8_t> bytes) {
    const std::size_t fact = Content(bytes, "fact");
    if (fact < bytes.size()) {
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(fact - 8),
                    bytes.begin() + static_cast<std::ptrdiff_t>(fact + 4));
    }
    bytes.erase(bytes.begin() + 4, bytes.begin() + 8);  // the size
    return bytes;
}

// A short head, its extensible form: a tag that says so, and behind the plain fields an extension of 22 bytes, with the
// bits that count, the mask of the channels, and a GUID of the tag that stood in front.
std::vector<std::uint8_t> WithExtensibleHead(std::vector<std::uint8_t> bytes, std::uint8_t mask) {
    const std::size_t format = Content(bytes, "fmt ");
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(format);
    const std::vector<std::uint8_t> extension = {22, 0, at[14], at[15], mask, 0, 0, 0,    at[0], at[1], 0,    0,
                                                 0,  0, 0x10,   0,      0x80, 0, 0, 0xAA, 0,     0x38,  0x9B, 0x71};
    constexpr std::size_t kPlainBytes = 16;
    const std::size_t size = Number(bytes, format - 4, 4);
    bytes.at(format - 4) = kPlainBytes + static_cast<std::uint8_t>(extension.size());
    bytes.at(format) = 0xFE;
    bytes.at(format + 1) = 0xFF;
    bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(format + kPlainBytes),
                bytes.begin() + static_cast<std::ptrdiff_t>(format + size));
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(format + kPlainBytes), extension.begin(), extension.end());
    return bytes;
}

// Byte for byte the file that the media library's own writer makes of the same samples.
class WaveFiles : public testing::TestWithParam<std::tuple<SampleFormat, int, int>> {};

TEST_P(WaveFiles, AreThoseOfTheMediaLibrary) {
    const auto [samples, channels, rateHz] = GetParam();
    const test::TemporaryFolder folder;
    lineup::BarsAndToneInfo tone;
    tone.numChannels = static_cast<std::uint32_t>(channels);
    tone.sampleRate = static_cast<float>(rateHz);
    const char* const names[] = {"s16", "s24", "s32", "f32"};
    const std::string name = names[static_cast<int>(samples)];
    auto settings = test::SmallExport(folder / "a.wav", 1001);
    settings.audioCodec = "pcm-" + name;
    settings.timecode = lineup::Timecode("10:00:00:00", settings.frameRate);
    settings.date = 86399;
    Export(test::OpenClip(tone), settings);

    const char* const layout = channels == 6 ? "5.1(side)" : channels == 2 ? "stereo" : "mono";
    const std::string ours = (folder / "a.wav").string();
    const std::string theirs = (folder / "b.wav").string();
    // The samples are taken out and put back, so that nothing of our header is passed on.
    const std::string command = fmt::format(
        "{0} -v error -i {1} -f {2}le - | {0} -v error -f {2}le -ar {3} -ac {4} -channel_layout '{5}' -i - -c copy "
        "-fflags +bitexact -rf64 auto -write_bext 1 -metadata time_reference={6} -metadata originator='Bars and Tone' "
        "-metadata description='1000 Hz at -12.04 dBFS peak' -metadata origination_date=1970-01-01 "
        "-metadata origination_time=23:59:59 -metadata coding_history={7} {8}",
        FFMPEG_PROGRAM, ours, name, rateHz, channels, layout, settings.timecode->Samples(rateHz), History(ours),
        theirs);
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    auto expected = test::ReadBytes(theirs);
    if (test::WaysOfFfmpeg().plainFloatWave && samples == SampleFormat::F32 && channels <= 2 && rateHz <= 48000) {
        expected = WithExtensibleHead(expected, channels == 2 ? 3 : 4);
    }
    EXPECT_TRUE(WithoutFact(test::ReadBytes(ours)) == WithoutFact(expected));
}

INSTANTIATE_TEST_SUITE_P(Formats, WaveFiles,
                         testing::Combine(testing::Values(SampleFormat::S16, SampleFormat::S24, SampleFormat::S32,
                                                          SampleFormat::F32),
                                          testing::Values(1, 2, 6), testing::Values(48000, 96000)));

// A file is made in pieces, whose ends lie within a sample's bytes, a block of clip time or the header's last stretch.
TEST(LongWaveFiles, OfManyPiecesAreTheClipsSamplesPackedInOneGo) {
    struct Case {
        std::uint32_t channels;
        const char* codec;
        SampleFormat samples;
        int rateHz;
        lineup::Dither dither;
    };
    for (const Case& of : {Case{1, "pcm-s24", SampleFormat::S24, 48000, lineup::Dither::None},
                           {2, "pcm-s24", SampleFormat::S24, 44100, lineup::Dither::None},
                           {2, "pcm-s16", SampleFormat::S16, 11025, lineup::Dither::Triangular},
                           {6, "pcm-s24", SampleFormat::S24, 48000, lineup::Dither::None}}) {
        const test::TemporaryFolder folder;
        lineup::BarsAndToneInfo tone;
        tone.numChannels = of.channels;
        tone.sampleRate = static_cast<float>(of.rateHz);
        const lineup::Clip clip = test::OpenClip(tone);
        constexpr std::int64_t kSamples = 900'001;
        constexpr std::int64_t kBlack = 100'002;
        auto settings = test::SmallExport(folder / "a.wav", kSamples);
        settings.audioCodec = of.codec;
        settings.dither = of.dither;
        settings.startSample = 12345;
        settings.blackSamples = kBlack;
        Export(clip, settings);

        std::vector<std::vector<float>> sound(of.channels, std::vector<float>(kSamples + kBlack));
        std::vector<float*> buffers;
        for (auto& channel : sound) {
            buffers.push_back(channel.data());
        }
        lineup::AudioReader(clip).Read(12345, kSamples, buffers);
        // Files order the channels of 5.1 as L R C LFE Ls Rs.
        const std::vector<std::size_t> order =
            of.channels == 6 ? std::vector<std::size_t>{0, 1, 4, 5, 2, 3} : std::vector<std::size_t>{0, 1};
        std::vector<const float*> inFileOrder;
        for (std::size_t c = 0; c < sound.size(); ++c) {
            if (of.dither == lineup::Dither::Triangular) {
                lineup::AddDither(sound[c], 12345, static_cast<int>(c));
            }
            inFileOrder.push_back(sound[order[c]].data());
        }
        std::vector<std::uint8_t> packed((kSamples + kBlack) * of.channels * lineup::PackedBytes(of.samples));
        PackFrames(inFileOrder, kSamples + kBlack, of.samples, packed.data());

        const auto file = test::ReadBytes(folder / "a.wav");
        const std::size_t data = Content(file, "data");
        ASSERT_EQ(Number(file, data - 4, 4), packed.size());
        ASSERT_EQ(file.size(), data + packed.size() + packed.size() % 2);
        const auto differs = std::ranges::mismatch(packed, std::span(file).subspan(data)).in1 - packed.begin();
        EXPECT_EQ(static_cast<std::size_t>(differs), packed.size()) << of.channels << " channels, " << of.codec;
    }
}

}  // namespace
