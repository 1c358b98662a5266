#pragma once

#include "Host/Lineup/Export/Media/FfmpegHandles.h"

#include <cstdint>
#include <span>

/// What the versions of the media libraries, from 5.1 to 7.1, have under different names.
namespace lineup {

#if LIBAVFORMAT_VERSION_MAJOR >= 61
using BytesToWrite = const std::uint8_t*;
#else
using BytesToWrite = std::uint8_t*;
#endif

/// How the lines of a frame belong to fields.
struct FrameFields {
    bool isInterlaced = false;
    bool isTopFirst = false;
};

#ifdef AV_FRAME_FLAG_INTERLACED
inline void SetFields(AVFrame& frame, FrameFields fields) {
    frame.flags &= ~(AV_FRAME_FLAG_INTERLACED | AV_FRAME_FLAG_TOP_FIELD_FIRST);
    frame.flags |= fields.isInterlaced ? AV_FRAME_FLAG_INTERLACED : 0;
    frame.flags |= fields.isTopFirst ? AV_FRAME_FLAG_TOP_FIELD_FIRST : 0;
}
inline FrameFields FieldsOf(const AVFrame& frame) {
    return {.isInterlaced = (frame.flags & AV_FRAME_FLAG_INTERLACED) != 0,
            .isTopFirst = (frame.flags & AV_FRAME_FLAG_TOP_FIELD_FIRST) != 0};
}
#else
inline void SetFields(AVFrame& frame, FrameFields fields) {
    frame.interlaced_frame = fields.isInterlaced ? 1 : 0;
    frame.top_field_first = fields.isTopFirst ? 1 : 0;
}
inline FrameFields FieldsOf(const AVFrame& frame) {
    return {.isInterlaced = frame.interlaced_frame != 0, .isTopFirst = frame.top_field_first != 0};
}
#endif

/// The sample formats that an encoder takes, in its order; empty where it does not say.
inline std::span<const AVSampleFormat> SampleFormatsOf(const AVCodec& encoder) {
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(61, 13, 100)
    const void* formats = nullptr;
    int count = 0;
    if (avcodec_get_supported_config(nullptr, &encoder, AV_CODEC_CONFIG_SAMPLE_FORMAT, 0, &formats, &count) < 0 ||
        formats == nullptr) {
        return {};
    }
    return {static_cast<const AVSampleFormat*>(formats), static_cast<std::size_t>(count)};
#else
    std::size_t count = 0;
    while (encoder.sample_fmts != nullptr && encoder.sample_fmts[count] != AV_SAMPLE_FMT_NONE) {
        ++count;
    }
    return {encoder.sample_fmts, count};
#endif
}

}  // namespace lineup
