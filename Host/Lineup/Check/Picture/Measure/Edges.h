#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <vector>

namespace lineup::picture {

/// An edge of the card as it was found.
struct MeasuredEdge {
    const CardEdge* edge = nullptr;
    std::size_t plane = 0;
    double at = 0;        ///< pixels of the picture
    double width = 0;     ///< pixels of the picture: how long the step would last at its steepest
    double contrast = 0;  ///< codes
    double beyond = 0;    ///< how far it goes beyond its levels on either side, of the step
};

/// What to look for along an edge.
struct EdgeSearch {
    double reach = 4;          ///< how far the place may be off, pixels
    int plane = -1;            ///< in this one alone; else in the first plane that shows it
    double mostBeyond = 0.35;  ///< of the step: what goes farther beyond its levels does not look like an edge
};

/// Measures the edges that lie in the frame. Edges that do not look like one are left out.
[[nodiscard]] std::vector<MeasuredEdge> MeasureEdges(const Raster& raster, const CardModel& model, const Place& place,
                                                     const EdgeSearch& search);

}  // namespace lineup::picture
