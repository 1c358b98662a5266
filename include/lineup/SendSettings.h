#pragma once

#include <lineup/Card.h>
#include <lineup/PictureAspect.h>
#include <lineup/Rational.h>
#include <lineup/Scan.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lineup {

class SendClock;

/// What says when each packet leaves, and which clip time it carries.
enum class SendTiming {
    Steady,  ///< clip time runs from the start, by the machine's monotonic clock
    Wall,    ///< clip time is the system's clock, the time since 1970: two senders send the same bytes at the same time
    Free,    ///< as fast as the receiver takes it: a file or a pipe
};

/// What a stream is made of.
enum class StreamFormat {
    TransportStream,  ///< picture and sound as MPEG-2 transport packets
    Linear24,         ///< sound alone, uncompressed, 24 bits: L24 over RTP
    Flv,              ///< H.264 and AAC as FLV: what RTMP carries
};

/// Instead of a codec's name: the stream has nothing of that kind.
inline constexpr const char* kNoCodec = "none";

/// What to send, and where.
struct SendSettings {
    std::string target;  ///< a URL, or a file's name

    /// Where the same stream goes besides, each a URL or a file's name. It is encoded once for all.
    std::vector<std::string> moreTargets;

    /// A pipe to write to instead of the target, which then only names it in errors. It stays open.
    std::optional<int> pipe;

    bool overwrite = false;  ///< replace a file that is there already

    StreamFormat format = StreamFormat::TransportStream;

    /// How much sound a packet of StreamFormat::Linear24 has, in microseconds.
    int packetUs = 1000;

    /// How often it has the clip's channels side by side: 8 of a stereo clip are 16 channels.
    int copies = 1;

    int width = 1920;
    int height = 1080;
    Card card = Card::Auto;
    PictureAspect aspect = PictureAspect::Auto;
    Scan scan = Scan::Progressive;
    Rational frameRate{25, 1};

    /// Names out of StreamTable.h; empty for the first, kNoCodec for none.
    std::string videoCodec;
    std::string audioCodec;

    /// From one picture that stands alone to the next; 1: all do; 0: half a second's.
    int groupFrames = 0;

    /// Of the whole stream, stuffing included; 0: as few as its delay allows.
    std::int64_t bitsPerSecond = 0;

    /// The clip's first sample in the stream, and how many are sent; without a number, for ever. With SendTiming::Wall
    /// the first is whatever the clock says.
    std::int64_t startSample = 0;
    std::optional<std::int64_t> samples;

    SendTiming timing = SendTiming::Steady;

    /// Instead of the machine's clock; it must outlive the call. Null: the machine's.
    SendClock* clock = nullptr;

    /// How long a connection may take nothing before it is given up and made anew.
    std::chrono::milliseconds connectionStall{10000};

    /// Told what happens to the stream on its way that ends nothing: "nobody receives at ...". May be empty.
    std::function<void(const std::string&)> notice;
};

}  // namespace lineup
