#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lineup::decoding {

/// Uncompressed sound in RTP as its URL describes it, where the sender's session description is not at hand:
/// "rtp://239.1.2.3:5004?encoding=L24&rate=48000&channels=6".
struct RtpSound {
    std::string host;
    std::string port;
    std::string encoding = "L24";  ///< or "L16"
    int rateHz = 48000;
    std::optional<int> channels;                 ///< else by the size of its packets
    std::map<std::string, std::string> options;  ///< the others: localaddr, buffer_size, sources
};

/// Empty where the URL does not describe sound. Throws EarlyEnd for one that does so wrongly.
[[nodiscard]] std::optional<RtpSound> ParseRtpSound(const std::string& url);

/// What a person is asked for where the FFmpeg libraries complain that nobody says what packets of RTP are; empty where
/// they complain of something else.
[[nodiscard]] std::optional<std::string> WantedOfRtp(std::string_view complaint);

/// Where to receive what `sound` describes, by the protocol alone.
[[nodiscard]] std::string PacketUrl(const RtpSound& sound);

/// What the packets say themselves.
class RtpPackets {
public:
    /// Takes up a packet in the order in which they arrive. True once enough is known: two of them follow each other.
    [[nodiscard]] bool TakeUp(std::span<const std::uint8_t> packet);

    /// The sender's number of what they carry.
    [[nodiscard]] int PayloadType() const { return mPayloadType; }

    /// Bytes that have one time stamp: a sample of all channels.
    [[nodiscard]] double BytesASample() const { return mBytesASample; }

private:
    std::optional<std::uint32_t> mLastNumber;
    std::uint32_t mLastStamp = 0;
    int mPayloadType = 0;
    double mBytesASample = 0;
};

/// The session description (RFC 4566) of `sound` in such packets. Throws EarlyEnd where they do not agree.
[[nodiscard]] std::string DescribeRtpSound(const RtpSound& sound, const RtpPackets& packets);

}  // namespace lineup::decoding
