#pragma once

#include <lineup/WaveformOverview.h>
#include "Apps/lineup/Overview/LabelPainter.h"
#include "Apps/lineup/Overview/OverviewHeading.h"
#include "Apps/lineup/Overview/OverviewLayout.h"
#include "Apps/lineup/Overview/OverviewTheme.h"

#include <cairo.h>
#include <vector>

namespace cli {

/// Draws a clip's waveform overview on a surface of the layout's size: a lane a channel in the plug-in's
/// order, its name and levels on the left, time below. `overview` has as many channels as `layout` has
/// lanes. Returns every text that was drawn, in order. The context is left in no particular state.
std::vector<Label> DrawOverview(cairo_t* context, const lineup::WaveformOverview& overview,
                                const OverviewHeading& heading, const OverviewLayout& layout,
                                const OverviewTheme& theme);

}  // namespace cli
