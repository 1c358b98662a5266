#include "Host/Lineup/Export/Media/VideoEncoder.h"

#include "Host/Lineup/Export/Media/PictureEncoder.h"
#include "Host/Lineup/Export/Media/VideoFrame.h"

#include <utility>

namespace lineup {

namespace {

// How muxers and players know the time code of the first frame.
constexpr std::string_view kTimecodeTag = "timecode";

}  // namespace

VideoEncoder::VideoEncoder(const Clip& clip, const PicturePlan& plan, Muxer& muxer)
    : mMuxer(&muxer),
      mFrame(MakeVideoFrame(clip, plan)),
      mEncoder(OpenPictureEncoder(*mFrame, plan, muxer.WantsGlobalHeaders())),
      mPacket(NewAvPacket()),
      mTimeBase(mEncoder->time_base),
      mStream(muxer.AddStream(*mEncoder)) {
    muxer.SetShape(plan.shape);
    if (plan.encoding->constantBitsPerSecond != 0) {
        mRate.emplace(plan.encoding->constantBitsPerSecond, plan.frameRate);
    }
    if (plan.timecode) {
        muxer.Tag(mStream, kTimecodeTag, plan.timecode->Text());
    }
    if (plan.encoding->framesStandAlone && !plan.encodeEveryFrame) {
        EncodeOnce(plan);
    } else if (plan.encoding->largestQuantiser != 0) {
        const int quantiser = EncodePicture(*mEncoder, *mFrame, plan).quantiser;
        mEncoder = OpenPictureEncoder(*mFrame, plan, muxer.WantsGlobalHeaders(), quantiser);
    }
}

// The encoder's memory and the picture's are not needed any more then.
void VideoEncoder::EncodeOnce(const PicturePlan& plan) {
    std::optional<GopTimecode> timecode;
    if (!plan.encoding->timecodeOption.empty()) {
        timecode.emplace(plan.timecode, plan.frameRate);
    }
    AvPacket picture = EncodePicture(*mEncoder, *mFrame, plan).packet;
    if (mRate) {
        mRate->FillUp(*picture);
    }
    mRepeated.emplace(std::move(picture), timecode, mRate);
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
        if (mRate) {
            mRate->FillUp(*mPacket);
            mPacket->size = static_cast<int>(mRate->BytesOf(mWritten));
        }
        ++mWritten;
        mMuxer->Write(*mPacket, mStream, mTimeBase);
    }
}

}  // namespace lineup
