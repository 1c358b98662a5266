#pragma once

#include <lineup/Clip.h>
#include "Host/Lineup/Export/Media/ConstantRate.h"
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/Muxer.h"
#include "Host/Lineup/Export/Media/RepeatedPicture.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <cstdint>
#include <optional>

namespace lineup {

/// The picture's way into a file. The clip's picture does not change: it is drawn and converted once, and
/// where the codec's frames stand alone it is encoded once too.
class VideoEncoder {
public:
    /// Opens the encoder and adds its stream to the muxer.
    VideoEncoder(const Clip& clip, const PicturePlan& plan, Muxer& muxer);

    /// What every frame takes in the file; 0 where each takes its own.
    [[nodiscard]] std::int64_t FrameBytes() const noexcept { return mRepeated ? mRepeated->Bytes() : 0; }

    /// Writes frame `index`; called for 0, 1, 2, ... in turn.
    void WriteFrame(std::int64_t index);

    /// Writes what the encoder still holds back.
    void Finish();

private:
    void EncodeOnce(const PicturePlan& plan);
    [[nodiscard]] AvPacket EncodeBlack(const PicturePlan& plan, int quantiser) const;
    void WritePackets();

    Muxer* mMuxer;
    AvFrame mFrame;
    AvFrame mBlack;            // null where none follows
    std::int64_t mFirstBlack;  // frame
    AvCodecContext mEncoder;
    AvPacket mPacket;
    AVRational mTimeBase;
    int mStream = 0;
    std::int64_t mWritten = 0;  // packets of every encoded frame
    std::optional<ConstantRate> mRate;
    std::optional<RepeatedPicture> mRepeated;  // empty: every frame is encoded
    std::optional<RepeatedPicture> mRepeatedBlack;
};

}  // namespace lineup
