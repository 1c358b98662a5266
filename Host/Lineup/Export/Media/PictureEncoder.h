#pragma once

#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <cstdint>

namespace lineup {

/// A constant quantiser of 1, the finest; encoders that choose their own pay no heed to it.
inline constexpr int kFinestQuantiser = 1;

/// Opens the plan's encoder for pictures like `frame`. `globalHeaders`: headers are kept out of the packets.
AvCodecContext OpenPictureEncoder(const AVFrame& frame, const PicturePlan& plan, bool globalHeaders,
                                  int quantiser = kFinestQuantiser);

/// Hands `frame` to the encoder as frame `index`.
void SendPicture(AVCodecContext& encoder, AVFrame& frame, std::int64_t index);

struct EncodedPicture {
    AvPacket packet;
    int quantiser = kFinestQuantiser;
};

/// `frame` encoded once: of a codec that must keep within a bit rate, with the least quantiser that does. The encoder
/// was just opened, and is not to be used again.
EncodedPicture EncodePicture(AVCodecContext& encoder, AVFrame& frame, const PicturePlan& plan);

}  // namespace lineup
