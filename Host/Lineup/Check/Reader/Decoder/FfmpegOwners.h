#pragma once

#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>

#include <libswresample/swresample.h>
}

namespace lineup::decoding {

/// Owners for what the FFmpeg libraries hand out.
struct FreeAv {
    void operator()(AVFormatContext* context) const noexcept { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const noexcept { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const noexcept { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const noexcept { av_packet_free(&packet); }
    void operator()(SwrContext* context) const noexcept { swr_free(&context); }
    void operator()(AVIOContext* context) const noexcept {
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
};
using AvFormatContext = std::unique_ptr<AVFormatContext, FreeAv>;
using AvCodecContext = std::unique_ptr<AVCodecContext, FreeAv>;
using AvFrame = std::unique_ptr<AVFrame, FreeAv>;
using AvPacket = std::unique_ptr<AVPacket, FreeAv>;
using AvIoContext = std::unique_ptr<AVIOContext, FreeAv>;
using AvResampler = std::unique_ptr<SwrContext, FreeAv>;

/// Options by name, as the libraries take them.
class AvOptions {
public:
    AvOptions() = default;
    ~AvOptions() { av_dict_free(&mAll); }
    AvOptions(const AvOptions&) = delete;
    AvOptions& operator=(const AvOptions&) = delete;

    void Set(const std::string& name, const std::string& value) { av_dict_set(&mAll, name.c_str(), value.c_str(), 0); }

    /// Those that a library knows are taken out by it.
    [[nodiscard]] AVDictionary** Address() noexcept { return &mAll; }

private:
    AVDictionary* mAll = nullptr;
};

/// `pointer` as it is. Throws std::bad_alloc for null.
template <class Pointer>
[[nodiscard]] Pointer RequireMemory(Pointer pointer) {
    if (pointer == nullptr) {
        throw std::bad_alloc();
    }
    return pointer;
}

/// What an error code means, in words.
[[nodiscard]] std::string AvErrorText(int code);

}  // namespace lineup::decoding
