#include "Host/Lineup/Export/Media/PictureEncoder.h"

#include "Host/Lineup/Export/Media/VideoFrame.h"

namespace lineup {

namespace {

constexpr int kRateChosenByEncoder = 0;
constexpr int kBitsPerByte = 8;

AvCodecContext Open(const AVFrame& frame, const VideoCodec& codec, const ExportSettings& settings, bool globalHeaders,
                    int quantiser) {
    AvCodecContext encoder = NewEncoder(codec.encoder);
    DescribeFrame(*encoder, frame);
    encoder->framerate = {settings.frameRate.num, settings.frameRate.den};
    encoder->time_base = {settings.frameRate.den, settings.frameRate.num};
    if (globalHeaders) {
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    if (quantiser != kRateChosenByEncoder) {
        encoder->flags |= AV_CODEC_FLAG_QSCALE;
        encoder->global_quality = quantiser * FF_QP2LAMBDA;
    }
    AvOptions options(codec.options);
    if (settings.timecode && !codec.timecodeOption.empty()) {
        options.Set(codec.timecodeOption, settings.timecode->Text());
    }
    OpenEncoder(*encoder, options);
    return encoder;
}

/// The bytes a frame may have.
std::int64_t LargestFrame(const VideoCodec& codec, Rational frameRate) {
    return codec.mostBitsPerSecond * frameRate.den / frameRate.num / kBitsPerByte;
}

int LeastQuantiser(AVFrame& frame, const VideoCodec& codec, const ExportSettings& settings) {
    const std::int64_t largest = LargestFrame(codec, settings.frameRate);
    int quantiser = 1;
    while (quantiser < codec.largestQuantiser &&
           EncodePicture(*Open(frame, codec, settings, false, quantiser), frame)->size > largest) {
        ++quantiser;
    }
    return quantiser;
}

}  // namespace

AvCodecContext OpenPictureEncoder(AVFrame& frame, const VideoCodec& codec, const ExportSettings& settings,
                                  bool globalHeaders) {
    const int quantiser = codec.largestQuantiser == 0 ? kRateChosenByEncoder : LeastQuantiser(frame, codec, settings);
    return Open(frame, codec, settings, globalHeaders, quantiser);
}

void SendPicture(AVCodecContext& encoder, AVFrame& frame, std::int64_t index) {
    frame.pts = index;
    frame.quality = encoder.global_quality;  // encoders with a constant quantiser take it from the frame
    SendFrame(encoder, &frame);
}

AvPacket EncodePicture(AVCodecContext& encoder, AVFrame& frame) {
    SendPicture(encoder, frame, 0);
    SendFrame(encoder, nullptr);
    AvPacket packet = NewAvPacket();
    if (!ReceivePacket(encoder, *packet)) {
        throw Error("cannot encode the picture: the encoder gave nothing");
    }
    return packet;
}

}  // namespace lineup
