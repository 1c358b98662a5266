#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

namespace lineup::decoding {

/// Takes down by how much the file says to turn a frame where it is shown: the frame's own word goes before the
/// stream's.
void DescribeTurn(const AVFrame& frame, const AVStream& stream, Frame& head);

}  // namespace lineup::decoding
