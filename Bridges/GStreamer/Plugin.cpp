// What the framework finds in this module: its name, and a function that registers the elements.
#include "Bridges/GStreamer/AudioSource.h"
#include "Bridges/GStreamer/LineupBin.h"
#include "Bridges/GStreamer/VideoSource.h"

#include <gst/gst.h>

namespace {

gboolean Register(GstPlugin* plugin) {
    using gstreamer::RegisterElement;
    const gboolean video = gst_element_register(plugin, "lineupvideosrc", GST_RANK_NONE,
                                                RegisterElement(gstreamer::VideoSource::kElement));
    const gboolean audio = gst_element_register(plugin, "lineupaudiosrc", GST_RANK_NONE,
                                                RegisterElement(gstreamer::AudioSource::kElement));
    const gboolean both = gst_element_register(plugin, "lineupsrc", GST_RANK_PRIMARY, gstreamer::LineupBinType());
    return video != FALSE && audio != FALSE && both != FALSE ? TRUE : FALSE;
}

}  // namespace

#define PACKAGE "barsandtone"
GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, lineup,
                  "Line-up clips: colour bars, line-up tone and channel idents", Register, LINEUP_VERSION, "MIT",
                  "Bars and Tone", "https://barsandtone.org")
