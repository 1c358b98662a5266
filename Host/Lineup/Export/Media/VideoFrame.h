#pragma once

#include <lineup/Clip.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

namespace lineup {

/// Draws the clip's picture as the plan's codec wants it: converted, and tagged with what it holds.
AvFrame MakeVideoFrame(const Clip& clip, const PicturePlan& plan);

/// Black in the form of another frame, and tagged as it is.
AvFrame MakeBlackFrame(const AVFrame& like);

/// Sets the encoder's picture format to that of `frame`, tags and all.
void DescribeFrame(AVCodecContext& encoder, const AVFrame& frame);

}  // namespace lineup
