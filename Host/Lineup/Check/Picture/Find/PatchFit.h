#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

namespace lineup::picture {

/// How well a card at a place explains a picture, whatever was done to its colours.
struct PatchFit {
    double explained = 0;  ///< the share of what the patches' colours differ that is a linear function of what was sent
    double contrast = 0;   ///< r.m.s. of luma over the patches, codes
    int patches = 0;       ///< that lie in the frame
};

/// Looks at a few pixels in the middle of each patch.
[[nodiscard]] PatchFit FitPatches(const SmallRaster& small, const CardModel& model, const Place& place);

}  // namespace lineup::picture
