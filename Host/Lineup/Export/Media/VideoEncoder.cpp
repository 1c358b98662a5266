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
      mBlack(plan.blackFrames > 0 ? MakeBlackFrame(*mFrame) : nullptr),
      mFirstBlack(plan.frames - plan.blackFrames),
      mEncoder(OpenPictureEncoder(*mFrame, plan, muxer.WantsGlobalHeaders())),
      mPacket(NewAvPacket()),
      mTimeBase(mEncoder->time_base),
      mStream(muxer.AddStream(*mEncoder)) {
    muxer.Describe(plan.shape, plan.scan);
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
    auto [picture, quantiser] = EncodePicture(*mEncoder, *mFrame, plan);
    if (mRate) {
        mRate->FillUp(*picture);
    }
    mRepeated.emplace(std::move(picture), timecode, mRate);
    if (mBlack != nullptr) {
        mRepeatedBlack.emplace(EncodeBlack(plan, quantiser), timecode, mRate);
        mBlack.reset();
    }
    mEncoder.reset();
    mFrame.reset();
}

// With the picture's quantiser, as where every frame is encoded.
AvPacket VideoEncoder::EncodeBlack(const PicturePlan& plan, int quantiser) const {
    const AvCodecContext encoder = OpenPictureEncoder(*mBlack, plan, mMuxer->WantsGlobalHeaders(), quantiser);
    AvPacket packet = NewAvPacket();
    SendPicture(*encoder, *mBlack, 0);
    SendFrame(*encoder, nullptr);
    static_cast<void>(ReceivePacket(*encoder, *packet));
    if (packet->size == 0) {
        throw Error("cannot encode black: the encoder gave nothing");
    }
    if (mRate) {
        mRate->FillUp(*packet);
    }
    return packet;
}

void VideoEncoder::WriteFrame(std::int64_t index) {
    if (mRepeated) {
        (index < mFirstBlack ? mRepeated : mRepeatedBlack)->Fill(*mPacket, index);
        mMuxer->Write(*mPacket, mStream, mTimeBase);
        return;
    }
    SendPicture(*mEncoder, index < mFirstBlack ? *mFrame : *mBlack, index);
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
