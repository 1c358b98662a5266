#include "Host/Lineup/Check/Reader/Decoder/MediaInput.h"

#include "Host/Lineup/Check/Reader/Decoder/DescriptorIo.h"
#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"
#include "Host/Lineup/Check/Reader/Decoder/LibraryLog.h"
#include "Host/Lineup/Check/Reader/Decoder/RtpSound.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace lineup::decoding {

namespace {

// What a URL may lead to: what comes over a network or a socket. None of them reads a file.
constexpr const char* kProtocols =
    "async,cache,crypto,data,dtls,ftp,gopher,gophers,hls,http,httpproxy,https,mmsh,mmst,rist,rtmp,rtmpe,rtmps,rtmpt,"
    "rtmpte,rtmpts,rtp,sctp,sftp,srt,srtp,tcp,tls,udp,udplite,unix,ws";

// A session description opens the streams that it names.
constexpr std::string_view kSession = "data:application/sdp,";

constexpr const char* kSocketBytes = "4000000";  // half a second and more, of packets that a busy machine takes late
constexpr std::size_t kLargestPacket = 65536;

struct CloseUrl {
    void operator()(AVIOContext* io) const noexcept { avio_close(io); }
};

constexpr int kMostBadReads = 100;  // in a row, of a part of a container that cannot be made sense of

// "recording.wav": some kinds of files are told by nothing but the ending of their names.
std::string Ending(const std::string& name) {
    constexpr std::size_t kLongestEnding = 8;
    const std::size_t dot = name.find_last_of("./");
    const std::string ending = dot == std::string::npos || name[dot] == '/' ? "" : name.substr(dot);
    const auto isPlain = [](char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); };
    const bool isUsable = ending.size() > 1 && ending.size() <= kLongestEnding &&
                          std::ranges::all_of(std::string_view(ending).substr(1), isPlain);
    return isUsable ? "recording" + ending : "recording";
}

std::string WithComplaint(const std::string& text) {
    const std::string complaint = TakeComplaint();
    if (const auto wanted = WantedOfRtp(complaint)) {
        return *wanted;
    }
    return complaint.empty() || complaint == text ? text : fmt::format("{} ({})", text, complaint);
}

// RTMP listens by an option beside its URL; the others have it in theirs, and so it is written for all.
std::string WithoutListening(const std::string& url, AvOptions& options) {
    constexpr std::string_view kListens = "?listen=1";
    if (!url.starts_with("rtmp://") || !url.ends_with(kListens)) {
        return url;
    }
    options.Set("listen", "1");
    return url.substr(0, url.size() - kListens.size());
}

}  // namespace

MediaInput::MediaInput(InputKind kind, const std::string& name, std::chrono::milliseconds stall)
    : mKind(kind), mStall(stall), mFormat(RequireMemory(avformat_alloc_context())), mDeadline(Clock::now() + stall) {
    mFormat->opaque = this;
    if (mKind == InputKind::Url) {
        mFormat->interrupt_callback = {.callback = OnWait, .opaque = this};
        Open(name);
    } else {
        PrepareDescriptor();
        Open(Ending(name));
    }
}

void MediaInput::PrepareDescriptor() {
    mIo = MakeDescriptorIo(mKind == InputKind::File);
    mFormat->pb = mIo.get();
    mFormat->flags |= AVFMT_FLAG_CUSTOM_IO;
    mFormat->io_open = RefuseToOpen;
}

// What the library opens in place of a URL, with options.
std::string MediaInput::PrepareUrl(const std::string& url, AvOptions& options) {
    options.Set("protocol_whitelist", kProtocols);
    const std::optional<RtpSound> sound = ParseRtpSound(url);
    if (url.starts_with("rtp://") || url.starts_with(kSession)) {
        options.Set("buffer_size", kSocketBytes);  // the system gives less where that is its limit
    }
    if (!sound && url.starts_with("rtp://")) {
        options.Set("reorder_queue_size", "0");  // of a transport stream it loses a tenth of a second for a packet
    }
    if (!sound) {
        return WithoutListening(url, options);
    }
    for (const auto& [option, value] : sound->options) {
        options.Set(option, value);
    }
    return std::string(kSession) + DescribeRtpSound(*sound, Await(*sound));
}

// The first packets of sound that its URL describes.
RtpPackets MediaInput::Await(const RtpSound& sound) {
    AvOptions options;
    options.Set("protocol_whitelist", kProtocols);
    AVIOContext* opened = nullptr;
    int result =
        avio_open2(&opened, PacketUrl(sound).c_str(), AVIO_FLAG_READ, &mFormat->interrupt_callback, options.Address());
    const std::unique_ptr<AVIOContext, CloseUrl> url(opened);
    RtpPackets packets;
    std::array<unsigned char, kLargestPacket> bytes{};
    while (result >= 0) {
        result = avio_read_partial(url.get(), bytes.data(), static_cast<int>(bytes.size()));
        if (result > 0 && packets.TakeUp(std::span(bytes).first(static_cast<std::size_t>(result)))) {
            return packets;
        }
    }
    if (result == AVERROR_EXIT) {
        EndForStall();
    }
    throw EarlyEnd(EndCause::NotOpened, WithComplaint(AvErrorText(result)));
}

void MediaInput::Open(const std::string& name) {
    AvOptions options;
    if (mKind != InputKind::Url) {
        options.Set("protocol_whitelist", "none");
    }
    const std::string opens = mKind == InputKind::Url ? PrepareUrl(name, options) : name;
    AVFormatContext* format = mFormat.release();  // which is freed when it cannot be opened
    const int opened = avformat_open_input(&format, opens.c_str(), nullptr, options.Address());
    mFormat.reset(format);
    const int known = opened < 0 ? opened : avformat_find_stream_info(mFormat.get(), nullptr);
    if (known >= 0) {
        return;
    }
    if (known == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
    if (mRefersToOthers) {
        throw EarlyEnd(EndCause::NotOpened, "it refers to other files, which are not opened");
    }
    if (known == AVERROR_EXIT) {
        EndForStall();
    }
    if (known == AVERROR_INVALIDDATA || known == AVERROR_EOF) {
        throw EarlyEnd(EndCause::NotOpened, WithComplaint("it is of no kind that the FFmpeg libraries know"));
    }
    throw EarlyEnd(EndCause::NotOpened, WithComplaint(AvErrorText(known)));
}

void MediaInput::EndForStall() const {
    throw EarlyEnd(EndCause::Stalled,
                   fmt::format("nothing has arrived for {} s", std::chrono::duration<double>(mStall).count()));
}

// Whatever arrives puts the deadline off.
bool MediaInput::HasStalled() {
    const std::int64_t bytes = BytesRead();
    if (bytes != mBytesAtDeadline) {
        mBytesAtDeadline = bytes;
        mDeadline = Clock::now() + mStall;
    }
    return Clock::now() >= mDeadline;
}

int MediaInput::OnWait(void* self) {
    return static_cast<MediaInput*>(self)->HasStalled() ? 1 : 0;
}

int MediaInput::RefuseToOpen(AVFormatContext* format, AVIOContext**, const char*, int, AVDictionary**) {
    static_cast<MediaInput*>(format->opaque)->mRefersToOthers = true;
    return AVERROR(EPERM);
}

std::int64_t MediaInput::BytesRead() const {
    return mFormat != nullptr && mFormat->pb != nullptr ? mFormat->pb->bytes_read : 0;
}

bool MediaInput::Seek(int stream, double stamp) {
    const double tick = av_q2d(mFormat->streams[stream]->time_base);
    return mKind == InputKind::File &&
           av_seek_frame(mFormat.get(), stream, static_cast<std::int64_t>(stamp / tick), AVSEEK_FLAG_BACKWARD) >= 0;
}

bool MediaInput::Read(AVPacket& packet) {
    mDeadline = Clock::now() + mStall;
    for (int bad = 0; bad < kMostBadReads; ++bad) {
        const int result = av_read_frame(mFormat.get(), &packet);
        if (result >= 0) {
            return true;
        }
        if (result == AVERROR_EOF) {
            return false;
        }
        if (result == AVERROR_EXIT || result == AVERROR(ETIMEDOUT)) {
            EndForStall();
        }
        if (result == AVERROR(ENOMEM)) {
            throw std::bad_alloc();
        }
        if (result != AVERROR_INVALIDDATA && result != AVERROR(EAGAIN)) {
            throw EarlyEnd(EndCause::CutShort, WithComplaint("reading failed: " + AvErrorText(result)));
        }
    }
    throw EarlyEnd(EndCause::CutShort, WithComplaint("what follows cannot be made sense of"));
}

}  // namespace lineup::decoding
