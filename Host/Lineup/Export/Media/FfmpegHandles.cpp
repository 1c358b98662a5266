#include "Host/Lineup/Export/Media/FfmpegHandles.h"

#include <fmt/format.h>

#include <array>
#include <new>

namespace lineup {

namespace {

// Errors come through at the level of information, everything below them not at all.
constexpr int kQuieter = AV_LOG_INFO - AV_LOG_ERROR;

template <typename Owner>
Owner RequireMemory(typename Owner::pointer memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return Owner(memory);
}

std::string Act(const AVCodecContext& encoder) {
    return fmt::format("cannot encode with {}", encoder.codec->name);
}

}  // namespace

AvOptions::AvOptions(std::span<const CodecOption> options) {
    Set(options);
}

void AvOptions::Set(std::span<const CodecOption> options) {
    for (const CodecOption& option : options) {
        Set(option.name, option.value);
    }
}

void AvOptions::Set(std::string_view name, std::string_view value) {
    RequireAv(av_dict_set(&mDictionary, std::string(name).c_str(), std::string(value).c_str(), 0),
              "cannot set options");
}

void AvOptions::RequireAllUsed(std::string_view user) const {
    const AVDictionaryEntry* const left = av_dict_get(mDictionary, "", nullptr, AV_DICT_IGNORE_SUFFIX);
    if (left != nullptr) {
        throw Error(fmt::format("{} has no option {}", user, left->key));
    }
}

int RequireAv(int code, std::string_view act) {
    if (code < 0) {
        std::array<char, AV_ERROR_MAX_STRING_SIZE> cause{};
        av_strerror(code, cause.data(), cause.size());
        throw Error(fmt::format("{}: {}", act, cause.data()));
    }
    return code;
}

AvFrame NewAvFrame() {
    return RequireMemory<AvFrame>(av_frame_alloc());
}

AvPacket NewAvPacket() {
    return RequireMemory<AvPacket>(av_packet_alloc());
}

AvCodecContext NewEncoder(std::string_view name) {
    const AVCodec* const codec = avcodec_find_encoder_by_name(std::string(name).c_str());
    if (codec == nullptr) {
        throw Error(fmt::format("cannot encode with {}: this system's FFmpeg libraries were built without it", name));
    }
    auto encoder = RequireMemory<AvCodecContext>(avcodec_alloc_context3(codec));
    encoder->log_level_offset = kQuieter;
    encoder->flags |= AV_CODEC_FLAG_BITEXACT;
    return encoder;
}

void OpenEncoder(AVCodecContext& encoder, AvOptions& options) {
    RequireAv(avcodec_open2(&encoder, nullptr, options.Address()), Act(encoder));
    options.RequireAllUsed(encoder.codec->name);
}

bool ReceivePacket(AVCodecContext& encoder, AVPacket& packet) {
    const int result = avcodec_receive_packet(&encoder, &packet);
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) {
        return false;
    }
    RequireAv(result, Act(encoder));
    return true;
}

void SendFrame(AVCodecContext& encoder, const AVFrame* frame) {
    RequireAv(avcodec_send_frame(&encoder, frame), Act(encoder));
}

}  // namespace lineup
