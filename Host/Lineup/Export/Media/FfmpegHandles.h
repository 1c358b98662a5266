#pragma once

#include <lineup/Error.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace lineup {

/// Owners for what FFmpeg hands out.
struct FreeAv {
    void operator()(AVCodecContext* context) const noexcept { avcodec_free_context(&context); }
    void operator()(AVFormatContext* context) const noexcept { avformat_free_context(context); }
    void operator()(AVFrame* frame) const noexcept { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const noexcept { av_packet_free(&packet); }
    void operator()(AVIOContext* context) const noexcept {
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
};
using AvCodecContext = std::unique_ptr<AVCodecContext, FreeAv>;
using AvFormatContext = std::unique_ptr<AVFormatContext, FreeAv>;
using AvFrame = std::unique_ptr<AVFrame, FreeAv>;
using AvPacket = std::unique_ptr<AVPacket, FreeAv>;
using AvIoContext = std::unique_ptr<AVIOContext, FreeAv>;

/// Options on their way into FFmpeg; freed when destroyed.
class AvOptions {
public:
    explicit AvOptions(std::span<const CodecOption> options = {});
    ~AvOptions() { av_dict_free(&mDictionary); }
    AvOptions(const AvOptions&) = delete;
    AvOptions& operator=(const AvOptions&) = delete;

    void Set(std::string_view name, std::string_view value);
    void Set(std::span<const CodecOption> options);

    /// FFmpeg takes out what it knows.
    [[nodiscard]] AVDictionary** Address() noexcept { return &mDictionary; }

    /// Throws Error when an option was left: a table names one that does not exist.
    void RequireAllUsed(std::string_view user) const;

private:
    AVDictionary* mDictionary = nullptr;
};

/// Throws Error "ACT: CAUSE" when an FFmpeg call returned `code` below 0; returns it otherwise.
int RequireAv(int code, std::string_view act);

/// New ones; throw std::bad_alloc.
AvFrame NewAvFrame();
AvPacket NewAvPacket();

/// A context for the encoder called `name`, set up to log nothing but errors and to write the same bytes
/// whatever the library's version. Throws Error when this FFmpeg has no such encoder.
AvCodecContext NewEncoder(std::string_view name);

/// Opens the encoder. Throws Error when it refuses, or does not know one of the options.
void OpenEncoder(AVCodecContext& encoder, AvOptions& options);

/// Takes the next packet out of an encoder; false when it has none now. Throws Error when encoding failed.
bool ReceivePacket(AVCodecContext& encoder, AVPacket& packet);

/// Hands the encoder a frame, or the end of all frames (null). Throws Error when encoding failed.
void SendFrame(AVCodecContext& encoder, const AVFrame* frame);

}  // namespace lineup
