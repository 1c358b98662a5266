#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Export/Samples/Quantise.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"
#include "Tests/Host/Lineup/Send/Loopback.h"
#include "Tests/Host/Lineup/Send/SimulatedClock.h"
#include "Tests/Host/Lineup/Send/TransportReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <malloc.h>
#include <string>

namespace {

using lineup::SendSettings;
using lineup::SendStatus;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::int64_t kRate = 48000;

SendSettings SmallStream(const std::string& target, lineup::SendClock* clock) {
    SendSettings settings;
    settings.target = target;
    settings.width = 320;
    settings.height = 240;
    settings.audioCodec = "s302m";
    settings.clock = clock;
    return settings;
}

// The clip's sound as 24 bits, in the order of files.
std::vector<std::int32_t> ClipSamples(const lineup::Clip& clip, std::int64_t first, std::int64_t count) {
    const auto channels = static_cast<std::size_t>(clip.NumChannels());
    std::vector<std::vector<float>> samples(channels, std::vector<float>(static_cast<std::size_t>(count)));
    std::vector<float*> pointers;
    std::ranges::transform(samples, std::back_inserter(pointers), [](auto& channel) { return channel.data(); });
    lineup::AudioReader(clip).Read(first, count, pointers);
    std::vector<std::int32_t> all;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        for (const int channel : lineup::FindChannelLayout(clip.NumChannels())->fileOrder) {
            all.push_back(lineup::Quantise<24>(samples[static_cast<std::size_t>(channel)][i]));
        }
    }
    return all;
}

std::vector<std::uint8_t> Joined(const std::vector<std::vector<std::uint8_t>>& datagrams, std::size_t head) {
    std::vector<std::uint8_t> bytes;
    for (const auto& datagram : datagrams) {
        bytes.insert(bytes.end(), datagram.begin() + static_cast<std::ptrdiff_t>(head), datagram.end());
    }
    return bytes;
}

std::uint32_t NumberAt(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t count) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        number = number << 8U | bytes.at(at + i);
    }
    return number;
}

// Each has half a second; nothing is lost, since the receiver is emptied before each datagram.
TEST(Send, BringsEveryPacketOverUdpAndRtp) {
    const lineup::Clip clip = test::OpenClip(2);
    for (const std::string scheme : {"udp", "rtp"}) {
        test::Loopback receiver;
        test::SimulatedClock clock;
        clock.onWait = [&receiver](std::int64_t) { receiver.Drain(); };
        SendSettings settings = SmallStream(scheme + "://" + receiver.Address(), &clock);
        settings.samples = kRate / 2;
        const SendStatus status = Send(clip, settings);
        receiver.Drain();
        ASSERT_EQ(static_cast<std::int64_t>(receiver.datagrams.size()), status.datagrams);
        const std::size_t head = scheme == "rtp" ? 12 : 0;
        for (std::size_t i = 0; i + 1 < receiver.datagrams.size(); ++i) {
            const auto& datagram = receiver.datagrams[i];
            ASSERT_EQ(datagram.size(), head + 7 * 188) << "packets are missing from datagram " << i;
            if (head > 0) {
                ASSERT_EQ(NumberAt(datagram, 0, 2), 0x8021U);  // version 2, a transport stream
                ASSERT_EQ(NumberAt(datagram, 2, 2), i) << "the sequence number of RTP";
                // When its first packet leaves, in 90 kHz.
                ASSERT_EQ(NumberAt(datagram, 4, 4),
                          static_cast<std::int64_t>(i) * 7 * 1504 * 90'000 / status.bitsPerSecond)
                    << "the time stamp of RTP in datagram " << i;
            }
        }
        const auto bytes = Joined(receiver.datagrams, head);
        EXPECT_EQ(static_cast<std::int64_t>(bytes.size()), status.bytes);
        const auto stream = test::ReadTransport(bytes);
        EXPECT_THAT(stream.errors, IsEmpty());
        EXPECT_EQ(stream.units.at(0x101).size(), 63U);  // of 8 ms, the last begun in time
    }
}

TEST(Send, PutsEverySampleIntoLinearPacketsOnceAndInTime) {
    const lineup::Clip clip = test::OpenClip(6);
    for (const int packetUs : {1000, 125}) {
        test::Loopback receiver;
        test::SimulatedClock clock;
        clock.onWait = [&receiver](std::int64_t) { receiver.Drain(); };
        SendSettings settings = SmallStream("rtp://" + receiver.Address(), &clock);
        settings.format = lineup::StreamFormat::Linear24;
        settings.packetUs = packetUs;
        settings.startSample = 2 * kRate;
        settings.samples = kRate / 10;
        static_cast<void>(Send(clip, settings));
        receiver.Drain();
        const auto packetSamples = static_cast<std::uint32_t>(packetUs * kRate / 1'000'000);
        std::uint32_t expected = 2 * kRate;
        for (const auto& datagram : receiver.datagrams) {
            ASSERT_EQ(NumberAt(datagram, 4, 4), expected) << "the time stamp of RTP";
            ASSERT_EQ(NumberAt(datagram, 2, 2), expected / packetSamples % 65536) << "the sequence number of RTP";
            expected += packetSamples;
        }
        const auto bytes = Joined(receiver.datagrams, 12);
        const auto samples = ClipSamples(clip, settings.startSample, *settings.samples);
        ASSERT_EQ(bytes.size(), samples.size() * 3);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            ASSERT_EQ(static_cast<std::int32_t>(NumberAt(bytes, 3 * i, 3) << 8U) >> 8, samples[i]) << i;
        }
    }
}

// To the slot; a transport stream goes on for as long as its sound then waits at the receiver.
TEST(Send, ByTheSystemsClockEndsSoManySamplesAfterItsBegin) {
    const lineup::Clip clip = test::OpenClip(2);
    for (const auto format : {lineup::StreamFormat::Linear24, lineup::StreamFormat::TransportStream}) {
        test::Loopback receiver;
        test::SimulatedClock clock(1'700'000'000'123'456'789);
        clock.onWait = [&receiver](std::int64_t) { receiver.Drain(); };
        SendSettings settings = SmallStream("rtp://" + receiver.Address(), &clock);
        settings.format = format;
        settings.videoCodec = lineup::kNoCodec;
        settings.timing = lineup::SendTiming::Wall;
        settings.samples = kRate / 10;
        const SendStatus status = Send(clip, settings);
        EXPECT_NEAR(status.seconds - status.delayMs / 1000, 0.1, 1e-9) << static_cast<int>(format);
    }
}

// 16 channels are 48 bytes a sample: a millisecond fits into a larger network's packet alone.
TEST(Send, PutsCopiesOfTheChannelsSideBySide) {
    const lineup::Clip clip = test::OpenClip(2);
    test::Loopback receiver;
    test::SimulatedClock clock;
    SendSettings settings = SmallStream("rtp://" + receiver.Address(), &clock);
    settings.format = lineup::StreamFormat::Linear24;
    settings.copies = 8;
    settings.samples = 48;
    EXPECT_THROW(static_cast<void>(Send(clip, settings)), lineup::UsageError);
    settings.target += "?mtu=2364";
    static_cast<void>(Send(clip, settings));
    receiver.Drain();
    ASSERT_EQ(receiver.datagrams.size(), 1U);
    const auto& datagram = receiver.datagrams[0];
    ASSERT_EQ(datagram.size(), 12U + 48 * 48);
    const auto samples = ClipSamples(clip, 0, 48);
    for (std::size_t i = 0; i < 48U * 16; ++i) {
        const std::int32_t expected = samples[i / 16 * 2 + i % 2];
        ASSERT_EQ(static_cast<std::int32_t>(NumberAt(datagram, 12 + 3 * i, 3) << 8U) >> 8, expected) << i;
    }
}

TEST(Send, SaysThatNobodyReceivesAndGoesOn) {
    std::string address;
    {
        const test::Loopback gone;
        address = gone.Address();
    }
    const lineup::Clip clip = test::OpenClip(2);
    test::SimulatedClock clock;
    SendSettings settings = SmallStream("udp://" + address, &clock);
    settings.samples = kRate / 2;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    const SendStatus status = Send(clip, settings);
    EXPECT_THAT(notices, ElementsAre("nobody receives at " + address + "; sending goes on"));
    EXPECT_EQ(status.jumps, 0);
}

// The second begins 0.7 s later, and sends from there on what the first sends.
TEST(Send, MakesTwoSendersByTheSystemsClockAlike) {
    const lineup::Clip clip = test::OpenClip(2);
    const test::TemporaryFolder folder;
    constexpr std::int64_t kNow = 1'700'000'000'123'456'789;
    std::vector<std::vector<std::uint8_t>> sent;
    for (const std::int64_t start : {kNow, kNow + 700'000'000}) {
        test::SimulatedClock clock(start);
        SendSettings settings = SmallStream(folder.Path() / (std::to_string(start) + ".ts"), &clock);
        settings.audioCodec = "ac3";
        settings.timing = lineup::SendTiming::Wall;
        static_cast<void>(Send(clip, settings, [&](const SendStatus&) { return clock.now < kNow + 2'000'000'000; }));
        sent.push_back(test::ReadBytes(settings.target));
    }
    const auto begin = std::ranges::search(sent[0], std::span(sent[1]).first(188));
    ASSERT_FALSE(begin.empty());
    const std::span late(begin.begin(), sent[0].end());
    ASSERT_EQ(late.size(), sent[1].size());
    for (std::size_t at = 0; at < late.size(); at += 188) {  // which packet, of what, tells where the difference began
        ASSERT_TRUE(std::ranges::equal(late.subspan(at, 188), std::span(sent[1]).subspan(at, 188)))
            << "packet " << at / 188 << " of PID " << (NumberAt(sent[1], at + 1, 2) & 0x1FFFU);
    }
    EXPECT_GT(sent[0].size(), sent[1].size());
    EXPECT_GT(sent[1].size(), sent[0].size() / 2);
}

struct DecodedCase {
    const char* codec;
    std::int64_t firstSample;  // of what is decoded: the first whole frame
    float largestError;
};

// Six seconds, in which each encoder is taken up anew: a seam would be a click. Uncompressed sound may differ in its
// last bit, because the stream reads the clip from its beginning after each cycle, where its rounding is the least.
TEST(Send, SoundsLikeTheClipAcrossTheSeamsOfItsEncoders) {
    lineup::ToneChoice tone;
    tone.frequencyHz = 997;
    const lineup::Clip clip = test::OpenClip(lineup::MakeSettings(test::OpenClip(2).Plugin(), tone));
    const test::TemporaryFolder folder;
    for (const DecodedCase& row : {DecodedCase{"aac", 0, 2e-3F}, DecodedCase{"ac3", 1280, 2e-3F},
                                   DecodedCase{"mp2", 671, 4e-3F}, DecodedCase{"s302m", 0, 0x1p-23F}}) {
        test::SimulatedClock clock;
        SendSettings settings = SmallStream(folder.Path() / (std::string(row.codec) + ".ts"), &clock);
        settings.videoCodec = lineup::kNoCodec;
        settings.audioCodec = row.codec;
        settings.samples = 6 * kRate;
        static_cast<void>(Send(clip, settings));
        const std::vector<float> decoded = test::DecodeFloats(settings.target, "a:0");
        constexpr std::size_t kSkipped = 4096;  // samples: the first decoded frame lacks the one before
        ASSERT_GT(decoded.size(), static_cast<std::size_t>(2 * 5 * kRate)) << row.codec;
        const auto frames = static_cast<std::int64_t>(decoded.size() / 2);
        const auto samples = ClipSamples(clip, row.firstSample, frames);
        float worst = 0;
        for (std::size_t i = 2 * kSkipped; i < decoded.size(); ++i) {
            worst = std::max(worst, std::abs(decoded[i] - static_cast<float>(samples[i]) * 0x1p-23F));
        }
        EXPECT_LE(worst, row.largestError) << row.codec;
    }
}

// A receiver that has gone, and a file, between two that listen.
TEST(Send, BringsTheSameToSeveral) {
    const lineup::Clip clip = test::OpenClip(2);
    const test::TemporaryFolder folder;
    test::Loopback first;
    test::Loopback last;
    std::string gone;
    { gone = test::Loopback().Address(); }
    test::SimulatedClock clock;
    clock.onWait = [&](std::int64_t) {
        first.Drain();
        last.Drain();
    };
    SendSettings settings = SmallStream("udp://" + first.Address(), &clock);
    const std::string file = folder.Path() / "beside.ts";
    settings.moreTargets = {"udp://" + gone, file, "rtp://" + last.Address()};
    settings.samples = kRate / 2;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    const SendStatus status = Send(clip, settings);
    first.Drain();
    last.Drain();
    EXPECT_EQ(static_cast<std::int64_t>(first.datagrams.size()), status.datagrams);
    EXPECT_EQ(Joined(first.datagrams, 0), Joined(last.datagrams, 12));
    EXPECT_EQ(Joined(first.datagrams, 0), test::ReadBytes(file));
    EXPECT_THAT(notices, testing::ElementsAre(HasSubstr(gone)));
}

std::size_t OpenFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

// LINEUP_SEND_HOURS=24 has it run for a day of the stream's time, and then with a sound whose frames are kept for nine
// minutes until they are all there.
TEST(Send, NeitherGrowsNorOpensAnythingAsItRuns) {
    const char* const text = std::getenv("LINEUP_SEND_HOURS");
    const double hours = text == nullptr ? 0.1 : std::strtod(text, nullptr);
    const lineup::Clip clip = test::OpenClip(text == nullptr ? 2 : 6);
    test::SimulatedClock clock;
    SendSettings settings = SmallStream("/dev/null", &clock);
    settings.audioCodec = text == nullptr ? "mp2" : "aac";
    settings.samples = static_cast<std::int64_t>(hours * 3600 * kRate);
    std::size_t files = 0;
    std::size_t bytes = 0;
    const SendStatus status = Send(clip, settings, [&](const SendStatus& now) {
        if (files == 0 && now.seconds >= 0.5 * hours * 3600) {
            files = OpenFiles();
            bytes = mallinfo2().uordblks;
        }
        return true;
    });
    ASSERT_GT(files, 0U);
    EXPECT_EQ(OpenFiles(), files - 1);  // the target is closed
    EXPECT_LT(mallinfo2().uordblks, bytes + 4096);
    EXPECT_EQ(status.lateDatagrams, 0);
    EXPECT_NEAR(status.seconds, hours * 3600, 1);
}

TEST(Send, DescribesItsSession) {
    const lineup::Clip clip = test::OpenClip(6);
    SendSettings settings = SmallStream("rtp://239.1.2.3:5004?ttl=8", nullptr);
    settings.format = lineup::StreamFormat::Linear24;
    settings.packetUs = 125;
    EXPECT_THAT(DescribeSession(clip, settings),
                AllOf(HasSubstr("c=IN IP4 239.1.2.3/8\r\n"), HasSubstr("m=audio 5004 RTP/AVP 96\r\n"),
                      HasSubstr("a=rtpmap:96 L24/48000/6\r\na=ptime:0.125\r\n"), HasSubstr("SMPTE2110.(51)")));
    settings.copies = 3;
    EXPECT_THAT(DescribeSession(clip, settings), AllOf(HasSubstr("L24/48000/18\r\n"), HasSubstr("(51,51,51)")));
}

struct RefusedCase {
    const char* option;
    void (*spoil)(SendSettings& settings);
};

TEST(Send, RefusesWhatCannotBe) {
    const lineup::Clip clip = test::OpenClip(6);
    const test::TemporaryFolder folder;
    const RefusedCase rows[] = {
        {"audio-codec", [](SendSettings& settings) { settings.audioCodec = "mp2"; }},  // six channels
        {"audio-codec", [](SendSettings& settings) { settings.audioCodec = "flac"; }},
        {"video-codec", [](SendSettings& settings) { settings.videoCodec = "prores"; }},
        {"gop", [](SendSettings& settings) { settings.groupFrames = -1; }},
        {"bitrate", [](SendSettings& settings) { settings.bitsPerSecond = 100'000; }},
        {"for", [](SendSettings& settings) { settings.samples = 0; }},
        {"output", [](SendSettings& settings) { settings.target = "udp://127.0.0.1"; }},
        {"output", [](SendSettings& settings) { settings.target = "ipx://127.0.0.1:1"; }},
        {"output", [](SendSettings& settings) { settings.target = "udp://127.0.0.1:1?colour=red"; }},
        {"copies",
         [](SendSettings& settings) {
             settings.target = "rtp://127.0.0.1:1";
             settings.format = lineup::StreamFormat::Linear24;
             settings.copies = 0;
         }},
        {"format", [](SendSettings& settings) { settings.format = lineup::StreamFormat::Linear24; }},
        {"format",
         [](SendSettings& settings) {
             settings.format = lineup::StreamFormat::Linear24;
             settings.target = "rtp://127.0.0.1:1";
             settings.moreTargets = {"udp://127.0.0.1:1"};
         }},
        {"output", [](SendSettings& settings) { settings.moreTargets = {"ipx://127.0.0.1:1"}; }},
    };
    for (const RefusedCase& row : rows) {
        test::SimulatedClock clock;
        SendSettings settings = SmallStream(folder.Path() / "refused.ts", &clock);
        settings.samples = kRate;
        row.spoil(settings);
        try {
            static_cast<void>(Send(clip, settings));
            ADD_FAILURE() << row.option;
        } catch (const lineup::UsageError& error) {
            EXPECT_EQ(error.Option(), row.option) << error.what();
        }
    }
}

}  // namespace
