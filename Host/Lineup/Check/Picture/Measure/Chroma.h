#pragma once

#include "Host/Lineup/Check/Picture/Measure/Edges.h"

#include <optional>

namespace lineup::picture {

/// How colour lies and how fine it is, against luma. Empty where too few edges show it.
struct ChromaShape {
    std::optional<double> right;  ///< pixels by which it lies to the right
    std::optional<double> down;
    std::optional<double> widthAcross;  ///< of an edge, pixels
    std::optional<double> widthDown;
};

[[nodiscard]] ChromaShape MeasureChroma(const Raster& raster, const CardModel& model, const Place& place);

/// How wide luma's edges are, pixels: the median.
[[nodiscard]] std::optional<double> MeasureSoftness(const Raster& raster, const CardModel& model, const Place& place,
                                                    bool upright);

}  // namespace lineup::picture
