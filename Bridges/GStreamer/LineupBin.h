#pragma once

#include <gst/gst.h>

namespace gstreamer {

/// The type of `lineupsrc`: picture and sound of a clip in one element, which opens addresses "lineup://?...".
[[nodiscard]] GType LineupBinType();

}  // namespace gstreamer
