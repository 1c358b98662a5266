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
};

/// Measures the edges that lie in the frame, each in the first plane that shows it, or in `plane` alone where it is
/// given. `reach` is how far the place may be off, pixels. Edges that do not look like one are left out.
[[nodiscard]] std::vector<MeasuredEdge> MeasureEdges(const Raster& raster, const CardModel& model, const Place& place,
                                                     double reach, int plane = -1);

}  // namespace lineup::picture
