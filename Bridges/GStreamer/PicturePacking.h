#pragma once

#include "Host/Lineup/Picture/ConvertedPicture.h"

#include <gst/video/video.h>

namespace gstreamer {

/// Puts the values of `picture` where the format of `frame` wants them, with the framework's own function; alpha is
/// opaque.
void PackPicture(const lineup::ConvertedPicture& picture, GstVideoFrame& frame);

}  // namespace gstreamer
