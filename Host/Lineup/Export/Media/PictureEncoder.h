#pragma once

#include <lineup/ExportSettings.h>
#include <lineup/FormatTable.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"

#include <cstdint>

namespace lineup {

/// A constant quantiser of 1, the finest; encoders that choose their own pay no heed to it.
inline constexpr int kFinestQuantiser = 1;

/// Opens the codec's encoder for pictures like `frame`, at the settings' frame rate and from their time code
/// on. `globalHeaders`: headers are kept out of the packets.
AvCodecContext OpenPictureEncoder(const AVFrame& frame, const VideoCodec& codec, const ExportSettings& settings,
                                  bool globalHeaders, int quantiser = kFinestQuantiser);

/// Hands `frame` to the encoder as frame `index`.
void SendPicture(AVCodecContext& encoder, AVFrame& frame, std::int64_t index);

struct EncodedPicture {
    AvPacket packet;
    int quantiser = kFinestQuantiser;
};

/// `frame` encoded once: of a codec that must keep within a bit rate, with the least quantiser that does. The encoder
/// was just opened, and is not to be used again.
EncodedPicture EncodePicture(AVCodecContext& encoder, AVFrame& frame, const VideoCodec& codec,
                             const ExportSettings& settings);

}  // namespace lineup
