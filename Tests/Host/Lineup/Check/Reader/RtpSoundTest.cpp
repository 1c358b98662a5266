// What a URL says of sound in RTP, and what its packets say themselves.
#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"
#include "Host/Lineup/Check/Reader/Decoder/RtpSound.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using lineup::decoding::ParseRtpSound;
using lineup::decoding::RtpPackets;
using testing::HasSubstr;

constexpr int kPayloadType = 98;

// A packet of 48 samples, `bytes` each, with the marker set.
std::vector<std::uint8_t> Packet(std::uint8_t number, std::size_t bytes, std::uint8_t first = 0x80,
                                 std::uint8_t type = 0x80 | kPayloadType) {
    constexpr std::uint8_t kSamples = 48;
    std::vector<std::uint8_t> packet = {
        first, type, 0xff, number, 0, 0, 1, static_cast<std::uint8_t>(kSamples * number), 1, 2, 3, 4};
    packet.resize(packet.size() + kSamples * bytes);
    return packet;
}

// The description of what the URL says in packets of stereo L24; or why it is refused.
std::string Described(const std::string& url) {
    try {
        const auto sound = ParseRtpSound(url);
        RtpPackets packets;
        static_cast<void>(packets.TakeUp(Packet(1, 6)));
        EXPECT_TRUE(packets.TakeUp(Packet(2, 6)));
        return sound ? DescribeRtpSound(*sound, packets) : "not described";
    } catch (const lineup::decoding::EarlyEnd& refused) {
        return refused.what();
    }
}

TEST(RtpSound, IsDescribedByItsUrlAndItsPackets) {
    EXPECT_EQ(Described("rtp://@239.1.2.3:5004?encoding=L24&sources=10.0.0.7"),
              "v=0\r\no=- 0 0 IN IP4 239.1.2.3\r\ns=-\r\nc=IN IP4 239.1.2.3\r\nt=0 0\r\nm=audio 5004 RTP/AVP 98\r\n"
              "a=rtpmap:98 L24/48000/2\r\na=source-filter: incl IN IP4 239.1.2.3 10.0.0.7\r\n");
    struct Row {
        const char* url;
        const char* text;
    };
    for (const Row& row : {
             Row{"rtp://[ff02::1]:5004?channels=2", "c=IN IP6 ff02::1\r\n"},
             Row{"rtp://h:5004?encoding=L16&rate=44100", "L16/44100/3"},
             Row{"rtp://h:5004", "not described"},
             Row{"rtp://h:5004?localaddr=10.0.0.1", "not described"},
             Row{"udp://h:5004?channels=2", "not described"},
             Row{"rtp://h:5004?channels=6", "its packets have 6 bytes a sample, which is not 6 channels of L24"},
             Row{"rtp://h:5004?channels=0", "channels=0 must be a whole number from 1 to 64"},
             Row{"rtp://h:5004?rate=48k", "rate=48k must be"},
             Row{"rtp://h:5004?encoding=AAC", "encoding=AAC must be L24 or L16"},
             Row{"rtp://h:5004?rate=48000&ttl=3", "has no option ttl"},
             Row{"rtp://h?rate=48000", "must be HOST:PORT"},
             Row{"rtp://?rate=48000", "must be HOST:PORT"},
         }) {
        EXPECT_THAT(Described(row.url), HasSubstr(row.text)) << row.url;
    }
}

TEST(RtpSound, IsKnownFromTwoPacketsThatFollowEachOther) {
    RtpPackets packets;
    constexpr std::uint8_t kReport = 200;  // of RTCP
    EXPECT_FALSE(packets.TakeUp({}));
    EXPECT_FALSE(packets.TakeUp(Packet(1, 18)));
    EXPECT_FALSE(packets.TakeUp(Packet(3, 18)));
    EXPECT_FALSE(packets.TakeUp(Packet(4, 18, 0x80, kReport)));
    EXPECT_FALSE(packets.TakeUp(Packet(4, 18, 0x00)));  // of no version that there is
    EXPECT_FALSE(packets.TakeUp(Packet(4, 0)));
    EXPECT_TRUE(packets.TakeUp(Packet(4, 18)));
    EXPECT_EQ(packets.PayloadType(), kPayloadType);
    EXPECT_EQ(packets.BytesASample(), 18);
    auto withMore = Packet(5, 18, 0x92);  // two sources that were mixed, and an extension of one word
    withMore.insert(withMore.begin() + 12, {1, 2, 3, 4, 5, 6, 7, 8, 0xbe, 0xde, 0, 1, 9, 9, 9, 9});
    EXPECT_TRUE(packets.TakeUp(withMore));
    EXPECT_EQ(packets.BytesASample(), 18);
}

}  // namespace
