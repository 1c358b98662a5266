#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Send.h>
#include "Host/Lineup/Send/Flv/FlvMaker.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"
#include "Tests/Host/Lineup/Send/FlvReader.h"
#include "Tests/Host/Lineup/Send/SimulatedClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

using lineup::SendSettings;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::int64_t kFlvRate = 48000;
constexpr int kSoundKind = 8;
constexpr int kPictureKind = 9;

SendSettings SmallFlv(const std::string& target, lineup::SendClock* clock) {
    SendSettings settings;
    settings.target = target;
    settings.format = lineup::StreamFormat::Flv;
    settings.width = 320;
    settings.height = 240;
    settings.clock = clock;
    return settings;
}

// Time stamps of 32 bits start anew after 49 d 17 h 2 min 47.296 s. Pictures of 30000/1001 a second and 1024 samples
// are no whole ms: each is rounded down by itself, and nothing adds up.
TEST(Flv, HasRegularTimeStampsWhereTheyStartAnew) {
    SendSettings settings = SmallFlv("unused.flv", nullptr);
    settings.frameRate = {30000, 1001};
    const lineup::Clip clip = test::OpenClip(2);
    lineup::FlvMaker maker(clip, settings);
    const std::int64_t wrap = maker.Times().SlotAt(std::int64_t{1} << 32U, 1000);
    std::vector<std::uint8_t> bytes;
    for (std::int64_t slot = wrap - 200; slot < wrap + 200; ++slot) {
        maker.AppendSlot(slot, bytes);
    }
    const test::ReceivedFlv flv = test::ReadFlv(bytes, /*hasHead=*/false);
    EXPECT_THAT(flv.errors, IsEmpty());
    for (const auto& [kind, step] : {std::pair{kPictureKind, 1001.0 / 30}, {kSoundKind, 1024 / 48.0}}) {
        const auto tags = flv.Media(kind);
        ASSERT_GT(tags.size(), 150U);
        int anew = 0;
        for (std::size_t i = 1; i < tags.size(); ++i) {
            const auto behind = static_cast<double>(static_cast<std::uint32_t>(tags[i].ms - tags[0].ms));
            EXPECT_NEAR(behind, static_cast<double>(i) * step, 1.0)
                << "time stamp " << i << " of kind " << kind << " is " << tags[i].ms;
            anew += tags[i].ms < tags[i - 1].ms ? 1 : 0;
        }
        EXPECT_EQ(anew, 1) << kind;
    }
    const auto pictures = flv.Media(kPictureKind);
    constexpr std::size_t kGroup = 14;  // half a second's
    for (std::size_t i = kGroup; i < pictures.size(); ++i) {
        ASSERT_TRUE(pictures[i].content == pictures[i - kGroup].content) << i;
    }
}

std::string BigEndian(std::uint64_t number, unsigned bytes) {
    std::string text;
    while (bytes-- > 0) {
        text += static_cast<char>(number >> (8 * bytes) & 0xFFU);
    }
    return text;
}

// A text, and a table of numbers, in the format of scripts.
TEST(Flv, BeginsWithWhatItHolds) {
    SendSettings settings = SmallFlv("unused.flv", nullptr);
    settings.frameRate = {30000, 1001};
    const lineup::Clip clip = test::OpenClip(6);
    const std::vector<std::uint8_t> head = lineup::FlvMaker(clip, settings).Head();
    EXPECT_EQ(head.at(4), 5);  // sound and picture
    const test::ReceivedFlv flv = test::ReadFlv(head);
    ASSERT_EQ(flv.tags.size(), 3U);
    std::string due = "\2" + BigEndian(10, 2) + "onMetaData" + "\10" + BigEndian(7, 4);
    for (const auto& [name, value] : std::vector<std::pair<std::string, double>>{{"width", 320},
                                                                                 {"height", 240},
                                                                                 {"framerate", 30000.0 / 1001},
                                                                                 {"videocodecid", 7},
                                                                                 {"audiosamplerate", kFlvRate},
                                                                                 {"audiosamplesize", 16},
                                                                                 {"audiocodecid", 10}}) {
        due += BigEndian(name.size(), 2) + name + '\0' + BigEndian(std::bit_cast<std::uint64_t>(value), 8);
    }
    due += BigEndian(9, 3);  // a name of no length, and the end of the table
    EXPECT_EQ(std::string(flv.tags[0].content.begin(), flv.tags[0].content.end()), due);
}

// A second from 2.13 s on: 25 pictures, the first of which stands alone wherever the stream begins.
TEST(Flv, IsAFileThatOthersDecodeToTheClip) {
    const lineup::Clip clip = test::OpenClip(6);
    const test::TemporaryFolder folder;
    test::SimulatedClock clock;
    SendSettings settings = SmallFlv(folder.Path() / "lineup.flv", &clock);
    settings.startSample = 213 * kFlvRate / 100;
    settings.samples = kFlvRate;
    const lineup::SendStatus status = Send(clip, settings);
    const auto bytes = test::ReadBytes(settings.target);
    const test::ReceivedFlv flv = test::ReadFlv(bytes);
    EXPECT_THAT(flv.errors, IsEmpty());
    const auto pictures = flv.Media(kPictureKind);
    ASSERT_EQ(pictures.size(), 25U);
    EXPECT_TRUE(pictures[0].IsEntry());
    EXPECT_EQ(pictures[0].ms, 2160);
    EXPECT_EQ(status.datagrams, static_cast<std::int64_t>(flv.Media(kSoundKind).size() + 25));
    const auto video = test::Streams(settings.target, "video").at(0);
    EXPECT_EQ(video.at("codec_name"), "h264");
    EXPECT_EQ(video.at("nb_read_frames"), "25");
    const auto sound = test::Streams(settings.target, "audio").at(0);
    EXPECT_EQ(sound.at("codec_name"), "aac");
    EXPECT_EQ(sound.at("channel_layout"), "5.1");

    const std::vector<float> decoded = test::DecodeFloats(settings.target, "a:0");
    constexpr std::int64_t kBlock = 1024;
    // The first frame that begins in time, and the sample with which it does: one frame is the encoder's delay.
    const std::int64_t first = ((settings.startSample + kBlock - 1) / kBlock + 1) * kBlock - kBlock;
    const auto count = static_cast<std::int64_t>(decoded.size() / 6);
    ASSERT_GT(count, kFlvRate - 3 * kBlock);
    std::vector<std::vector<float>> samples(6, std::vector<float>(static_cast<std::size_t>(count)));
    std::vector<float*> pointers;
    std::ranges::transform(samples, std::back_inserter(pointers), [](auto& channel) { return channel.data(); });
    lineup::AudioReader(clip).Read(first, count, pointers);
    float worst = 0;
    const auto& order = lineup::FindChannelLayout(6)->fileOrder;
    for (std::size_t i = 6 * 2 * kBlock; i < decoded.size(); ++i) {  // the first decoded frame lacks the one before
        const auto channel = static_cast<std::size_t>(order[i % 6]);
        if (i % 6 != 3) {  // LFE keeps its low tones alone
            worst = std::max(worst, std::abs(decoded[i] - samples[channel][i / 6]));
        }
    }
    EXPECT_LE(worst, 5e-3F);
}

TEST(Flv, IsRefusedWhatItCannotCarry) {
    struct Row {
        const char* option;
        const char* text;
        void (*spoil)(SendSettings& settings);
    };
    const Row rows[] = {
        {"video-codec", "flv, which has h264 and aac", [](SendSettings& settings) { settings.videoCodec = "mpeg2"; }},
        {"audio-codec", "flv, which has h264 and aac", [](SendSettings& settings) { settings.audioCodec = "s302m"; }},
        {"bitrate", "no stuffing", [](SendSettings& settings) { settings.bitsPerSecond = 8'000'000; }},
        {"format", "is for rtmp://", [](SendSettings& settings) { settings.target = "udp://127.0.0.1:1"; }},
        {"output", "choose --format flv",
         [](SendSettings& settings) {
             settings.target = "rtmp://127.0.0.1/a/b";
             settings.format = lineup::StreamFormat::TransportStream;
         }},
    };
    for (const Row& row : rows) {
        test::SimulatedClock clock;
        SendSettings settings = SmallFlv("refused.flv", &clock);
        row.spoil(settings);
        try {
            static_cast<void>(Send(test::OpenClip(2), settings));
            ADD_FAILURE() << row.text;
        } catch (const lineup::UsageError& error) {
            EXPECT_EQ(error.Option(), row.option);
            EXPECT_THAT(error.what(), HasSubstr(row.text));
        }
    }
}

}  // namespace
