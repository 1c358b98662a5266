#pragma once

#include "Host/Lineup/Export/ExportSettings.h"
#include "Host/Lineup/Export/FormatTable.h"
#include "Host/Lineup/Export/Media/FfmpegHandles.h"

#include <cstdint>

namespace lineup {

/// Opens the codec's encoder for pictures like `frame`, at the settings' frame rate and from their time code
/// on. Of a codec that must keep within a bit rate, its quantiser is the least that does. `globalHeaders`:
/// headers are kept out of the packets.
AvCodecContext OpenPictureEncoder(AVFrame& frame, const VideoCodec& codec, const ExportSettings& settings,
                                  bool globalHeaders);

/// Hands `frame` to the encoder as frame `index`.
void SendPicture(AVCodecContext& encoder, AVFrame& frame, std::int64_t index);

/// The encoder's packet for `frame` and nothing else. The encoder is at its end afterwards.
AvPacket EncodePicture(AVCodecContext& encoder, AVFrame& frame);

}  // namespace lineup
