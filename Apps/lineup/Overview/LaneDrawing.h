#pragma once

#include <lineup/WaveformOverview.h>
#include "Apps/lineup/Overview/LevelScale.h"
#include "Apps/lineup/Overview/OverviewLayout.h"
#include "Apps/lineup/Overview/OverviewTheme.h"

#include <cairo.h>

namespace cli {

/// How one channel is drawn.
struct LaneStyle {
    Rectangle lane = {};  ///< the whole of it is the overview's length by the scale's range
    LevelScale scale = {};
    Rgb colour = 0;
    Rgb noData = 0;
    double bandOpacity = 1;
    double unit = 1;  ///< pixels
};

/// Draws a channel's columns over its lane: a level as a band with firm edges, a traced tone as a line from
/// column to column, silence as a thin line along the centre, and hatching where the plug-in wrote nothing.
void DrawWaveform(cairo_t* context, const lineup::ChannelOverview& channel, const LaneStyle& style);

}  // namespace cli
