#include "Host/Lineup/Export/Media/OpenSoundEncoder.h"

#include "Host/Lineup/Export/Media/FfmpegVersions.h"

#include <fmt/format.h>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/samplefmt.h>
}

namespace lineup {

namespace {

constexpr int kBitsOf24 = 24;

AVSampleFormat InterleavedFormat(SampleFormat samples) {
    switch (samples) {
        case SampleFormat::S16:
            return AV_SAMPLE_FMT_S16;
        case SampleFormat::S24:  // in the upper bytes of 32 bits
        case SampleFormat::S32:
            return AV_SAMPLE_FMT_S32;
        case SampleFormat::F32:
            break;
    }
    return AV_SAMPLE_FMT_FLT;
}

/// The encoder's own form of these samples: all channels in one buffer, or a buffer a channel.
AVSampleFormat FormatFor(const AVCodec& encoder, SampleFormat samples) {
    const AVSampleFormat interleaved = InterleavedFormat(samples);
    for (const AVSampleFormat format : SampleFormatsOf(encoder)) {
        if (av_get_packed_sample_fmt(format) == interleaved) {
            return format;
        }
    }
    throw Error(fmt::format("cannot encode with {}: it does not take these samples", encoder.name));
}

}  // namespace

AvCodecContext OpenSoundEncoder(const SoundPlan& plan, const TrackPlan& track, bool globalHeaders) {
    const AudioEncoding& encoding = *plan.encoding;
    AvCodecContext encoder = NewEncoder(encoding.encoder);
    encoder->sample_fmt = FormatFor(*encoder->codec, encoding.samples);
    encoder->sample_rate = plan.sampleRateHz;
    encoder->time_base = {1, plan.sampleRateHz};
    encoder->bit_rate = std::int64_t{encoding.bitRatePerChannel} * static_cast<std::int64_t>(track.channels.size());
    if (encoding.samples == SampleFormat::S24) {
        encoder->bits_per_raw_sample = kBitsOf24;
    }
    RequireAv(av_channel_layout_from_string(&encoder->ch_layout, track.layout.c_str()),
              "cannot name the sound's channels");
    if (globalHeaders) {
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    AvOptions options;
    OpenEncoder(*encoder, options);
    return encoder;
}

}  // namespace lineup
