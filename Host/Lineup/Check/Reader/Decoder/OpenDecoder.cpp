#include "Host/Lineup/Check/Reader/Decoder/OpenDecoder.h"

#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"

#include <fmt/format.h>

#include <new>

namespace lineup::decoding {

AvCodecContext DecoderFor(const AVStream& stream) {
    const AVCodecParameters& parameters = *stream.codecpar;
    const AVCodec* const codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr) {
        throw EarlyEnd(EndCause::NotOpened, fmt::format("the FFmpeg libraries here cannot decode {}",
                                                        avcodec_get_name(parameters.codec_id)));
    }
    AvCodecContext decoder(RequireMemory(avcodec_alloc_context3(codec)));
    if (avcodec_parameters_to_context(decoder.get(), &parameters) < 0) {
        throw std::bad_alloc();
    }
    decoder->pkt_timebase = stream.time_base;
    decoder->thread_count = 1;
    return decoder;
}

void OpenDecoder(AVCodecContext& decoder) {
    const AVCodec& codec = *decoder.codec;  // which a failure takes out
    if (const int result = avcodec_open2(&decoder, &codec, nullptr); result < 0) {
        throw EarlyEnd(EndCause::NotOpened, fmt::format("{} cannot be decoded: {}", codec.name, AvErrorText(result)));
    }
}

}  // namespace lineup::decoding
