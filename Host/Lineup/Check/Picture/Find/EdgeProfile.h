#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <vector>

namespace lineup::picture {

/// Where a card may lie along one axis of a small picture, in its pixels.
struct Span {
    double start = 0;
    double length = 0;
    bool turned = false;
    double score = 0;
};

/// The spans, the likeliest first, at which the card's edges across an axis fall on edges of the picture. `upright`:
/// along the width.
[[nodiscard]] std::vector<Span> LikelySpans(const SmallRaster& small, const CardModel& model, bool upright,
                                            std::size_t most);

}  // namespace lineup::picture
