#pragma once

#include <lineup/Clip.h>
#include <lineup/ExportSettings.h>
#include <lineup/FormatTable.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"

namespace lineup {

/// Draws the clip's picture as the codec wants it: converted, and tagged with what it holds.
AvFrame MakeVideoFrame(const Clip& clip, const VideoCodec& codec, int width, int height, Card card);

/// Sets the encoder's picture format to that of `frame`, tags and all.
void DescribeFrame(AVCodecContext& encoder, const AVFrame& frame);

}  // namespace lineup
