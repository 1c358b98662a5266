#pragma once

#include <lineup/WaveformOverview.h>
#include "Apps/lanes/Drawing.h"
#include "Apps/lanes/LaneColours.h"

#include <cstddef>
#include <vector>

namespace lanes {

/// Where the parts of a drawing of lanes stand.
struct LaneSheet {
    double width = 0;
    double height = 0;
    double unit = 1;  ///< pixels in the thickness of a fine line

    std::vector<Rectangle> lanes;  ///< the plots, of equal x and width, their edges on whole pixels

    double namesX = 0;       ///< where the channels' names begin
    double levelsRight = 0;  ///< the right edge of the levels
    double levelUnitX = 0;   ///< where their unit begins
    double levelUnitY = 0;   ///< its middle
    double timesY = 0;       ///< the middle of the times

    double nameSize = 0;  ///< of type
    double levelSize = 0;
    double timeSize = 0;
};

/// The lanes of an overview: its channels `order`, one a lane, each with its name and a scale of its levels, over a
/// time axis. `order` has as many channels as the sheet has lanes.
///
/// A level is a band with firm edges, a wave a line from column to column, silence a thin line along the centre;
/// stripes stand where the plug-in wrote nothing.
[[nodiscard]] Drawing DrawLanes(const lineup::WaveformOverview& overview, const std::vector<std::size_t>& order,
                                const LaneSheet& sheet, const LaneColours& colours, const Measure& measure);

}  // namespace lanes
