#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <optional>

namespace lineup::picture {

/// How far luma stands beyond its level beside an edge, % of the edge's step: the median,
/// across or down, whichever is more. Empty where too few edges
/// have room beside them.
[[nodiscard]] std::optional<double> MeasureRinging(const Raster& raster, const CardModel& model, const Place& place);

/// Which share of what luma changes inside of patches lies on a grid of 8 pixels, %: 0 where it changes alike
/// everywhere or hardly at all, 100 where nothing changes between the lines of the grid.
[[nodiscard]] std::optional<double> MeasureBlocking(const Raster& raster, const CardModel& model, const Place& place);

}  // namespace lineup::picture
