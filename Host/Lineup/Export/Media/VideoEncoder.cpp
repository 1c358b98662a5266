#include "Host/Lineup/Export/Media/VideoEncoder.h"

#include "Host/Lineup/Export/Media/VideoFrame.h"

namespace lineup {

namespace {

// How muxers and players know the time code of the first frame.
constexpr std::string_view kTimecodeTag = "timecode";

AvCodecContext Open(const AVFrame& frame, const VideoCodec& codec, const ExportSettings& settings, const Muxer& muxer) {
    AvCodecContext encoder = NewEncoder(codec.encoder);
    DescribeFrame(*encoder, frame);
    encoder->framerate = {settings.frameRate.num, settings.frameRate.den};
    encoder->time_base = {settings.frameRate.den, settings.frameRate.num};
    if (muxer.WantsGlobalHeaders()) {
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    AvOptions options(codec.options);
    if (settings.timecode && !codec.timecodeOption.empty()) {
        options.Set(codec.timecodeOption, settings.timecode->Text());
    }
    OpenEncoder(*encoder, options);
    return encoder;
}

}  // namespace

VideoEncoder::VideoEncoder(const Clip& clip, const VideoCodec& codec, const ExportSettings& settings, Muxer& muxer)
    : mMuxer(&muxer),
      mFrame(MakeVideoFrame(clip, codec, settings.width, settings.height, settings.card)),
      mEncoder(Open(*mFrame, codec, settings, muxer)),
      mPacket(NewAvPacket()),
      mRepeat(codec.framesStandAlone && !settings.encodeEveryFrame),
      mStream(muxer.AddStream(*mEncoder)) {
    if (settings.timecode) {
        muxer.Tag(mStream, kTimecodeTag, settings.timecode->Text());
    }
}

void VideoEncoder::WriteFrame(std::int64_t index) {
    if (!mRepeat) {
        mFrame->pts = index;
        SendFrame(*mEncoder, mFrame.get());
        WritePackets();
        return;
    }
    if (!mOnlyPacket) {
        EncodeOnce();
    }
    RequireAv(av_packet_ref(mPacket.get(), mOnlyPacket.get()), "cannot repeat a frame");
    mPacket->pts = index;
    mPacket->dts = index;
    mPacket->duration = 1;
    mMuxer->Write(*mPacket, mStream, mEncoder->time_base);
}

void VideoEncoder::Finish() {
    if (!mRepeat) {
        SendFrame(*mEncoder, nullptr);
        WritePackets();
    }
}

void VideoEncoder::EncodeOnce() {
    mFrame->pts = 0;
    SendFrame(*mEncoder, mFrame.get());
    SendFrame(*mEncoder, nullptr);
    AvPacket packet = NewAvPacket();
    if (!ReceivePacket(*mEncoder, *packet)) {
        throw Error("cannot encode the picture: the encoder gave nothing");
    }
    mOnlyPacket = std::move(packet);
}

void VideoEncoder::WritePackets() {
    while (ReceivePacket(*mEncoder, *mPacket)) {
        mPacket->duration = 1;
        mMuxer->Write(*mPacket, mStream, mEncoder->time_base);
    }
}

}  // namespace lineup
