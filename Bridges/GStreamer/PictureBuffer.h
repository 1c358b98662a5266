#pragma once

#include <lineup/Card.h>
#include <lineup/Clip.h>
#include "Bridges/GStreamer/Handles.h"

#include <gst/video/video.h>

namespace gstreamer {

/// The clip's picture as a buffer that nobody may write into. Throws lineup::Error for a format or a colorimetry that
/// it cannot have.
[[nodiscard]] Buffer DrawPicture(const lineup::Clip& clip, lineup::Card card, const GstVideoInfo& info);

}  // namespace gstreamer
