#include "Host/Lineup/Export/Media/VideoEncoder.h"

#include "Host/Lineup/Export/Media/PictureEncoder.h"
#include "Host/Lineup/Export/Media/VideoFrame.h"

namespace lineup {

namespace {

// How muxers and players know the time code of the first frame.
constexpr std::string_view kTimecodeTag = "timecode";

}  // namespace

VideoEncoder::VideoEncoder(const Clip& clip, const VideoCodec& codec, const ExportSettings& settings, Muxer& muxer)
    : mMuxer(&muxer),
      mFrame(MakeVideoFrame(clip, codec, settings.width, settings.height, settings.card)),
      mEncoder(OpenPictureEncoder(*mFrame, codec, settings, muxer.WantsGlobalHeaders())),
      mPacket(NewAvPacket()),
      mTimeBase(mEncoder->time_base),
      mStream(muxer.AddStream(*mEncoder)) {
    if (settings.timecode) {
        muxer.Tag(mStream, kTimecodeTag, settings.timecode->Text());
    }
    if (codec.framesStandAlone && !settings.encodeEveryFrame) {
        EncodeOnce(codec, settings);
    } else if (codec.largestQuantiser != 0) {
        const int quantiser = EncodePicture(*mEncoder, *mFrame, codec, settings).quantiser;
        mEncoder = OpenPictureEncoder(*mFrame, codec, settings, muxer.WantsGlobalHeaders(), quantiser);
    }
}

// The encoder's memory and the picture's are not needed any more then.
void VideoEncoder::EncodeOnce(const VideoCodec& codec, const ExportSettings& settings) {
    std::optional<GopTimecode> timecode;
    if (!codec.timecodeOption.empty()) {
        timecode.emplace(settings.timecode, settings.frameRate);
    }
    mRepeated.emplace(EncodePicture(*mEncoder, *mFrame, codec, settings).packet, timecode);
    mEncoder.reset();
    mFrame.reset();
}

void VideoEncoder::WriteFrame(std::int64_t index) {
    if (mRepeated) {
        mRepeated->Fill(*mPacket, index);
        mMuxer->Write(*mPacket, mStream, mTimeBase);
        return;
    }
    SendPicture(*mEncoder, *mFrame, index);
    WritePackets();
}

void VideoEncoder::Finish() {
    if (!mRepeated) {
        SendFrame(*mEncoder, nullptr);
        WritePackets();
    }
}

void VideoEncoder::WritePackets() {
    while (ReceivePacket(*mEncoder, *mPacket)) {
        mPacket->duration = 1;
        mMuxer->Write(*mPacket, mStream, mTimeBase);
    }
}

}  // namespace lineup
