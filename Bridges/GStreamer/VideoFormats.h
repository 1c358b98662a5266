#pragma once

#include <gst/video/video.h>
#include <span>

namespace gstreamer {

/// The formats of pictures, those that most elements take and that show most first: 4:2:2 and 4:2:0 of 8 bits, of 10,
/// then all others.
[[nodiscard]] std::span<const GstVideoFormat> VideoFormats();

/// What the values of a picture stand for, as `lineup render` has it unless caps say otherwise: BT.709 in legal range
/// from 720 lines on and BT.601 below; R'G'B' in full range.
[[nodiscard]] GstVideoColorimetry UsualColorimetry(GstVideoFormat format, int height);

/// Draws and packs nothing itself: whether pictures of these values can be made. Throws lineup::Error, saying which
/// cannot.
void RequireColorimetry(const GstVideoInfo& info);

}  // namespace gstreamer
