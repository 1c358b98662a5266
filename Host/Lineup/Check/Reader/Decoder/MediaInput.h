#pragma once

#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"
#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"
#include "Host/Lineup/Check/Reader/Decoder/RtpSound.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace lineup::decoding {

/// The recording, taken apart into packets.
class MediaInput {
public:
    /// Opens it and finds out what is in it. `name` is the URL, or the file's name, of which only the ending counts.
    /// A URL may send nothing for as long as `stall`. Throws EarlyEnd.
    MediaInput(InputKind kind, const std::string& name, std::chrono::milliseconds stall);
    ~MediaInput() = default;
    MediaInput(const MediaInput&) = delete;
    MediaInput& operator=(const MediaInput&) = delete;

    [[nodiscard]] const AVFormatContext& Format() const noexcept { return *mFormat; }
    [[nodiscard]] AVStream& Stream(unsigned index) const noexcept { return *mFormat->streams[index]; }

    /// Goes to the last place at or before a time stamp of that stream, s, where decoding can begin. False where it
    /// cannot: it is then where it was, or at the start.
    [[nodiscard]] bool Seek(int stream, double stamp);

    /// The next packet; false at the end. Throws EarlyEnd.
    [[nodiscard]] bool Read(AVPacket& packet);

    /// Bytes read so far.
    [[nodiscard]] std::int64_t BytesRead() const;

private:
    using Clock = std::chrono::steady_clock;

    void PrepareDescriptor();
    void Open(const std::string& name);
    [[nodiscard]] std::string PrepareUrl(const std::string& url, AvOptions& options);
    [[nodiscard]] RtpPackets Await(const RtpSound& sound);
    [[nodiscard]] bool HasStalled();
    [[noreturn]] void EndForStall() const;
    static int OnWait(void* self);
    static int RefuseToOpen(AVFormatContext* format, AVIOContext** io, const char* url, int flags,
                            AVDictionary** options);

    InputKind mKind;
    std::chrono::milliseconds mStall;
    AvIoContext mIo;
    AvFormatContext mFormat;
    Clock::time_point mDeadline;
    std::int64_t mBytesAtDeadline = -1;
    bool mRefersToOthers = false;
};

}  // namespace lineup::decoding
