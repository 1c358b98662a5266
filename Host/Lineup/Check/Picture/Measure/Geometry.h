#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

namespace lineup::picture {

/// Where a card lies, to a fraction of a pixel.
struct Geometry {
    Place place;
    int edgesAcross = 0;  ///< that the place was taken from
    int edgesDown = 0;
    double error = 0;  ///< r.m.s. of what is left, pixels: cards of other makers have their edges a little elsewhere
    bool isExact = false;  ///< enough edges lie where the card has them
};

/// Refines a rough place, which may be `reach` pixels off.
[[nodiscard]] Geometry RefinePlace(const Raster& raster, const CardModel& model, const Place& rough, double reach);

/// The place of a card that is as large as `model` was drawn, found near `rough`, where it was taken for another size.
[[nodiscard]] Geometry PlaceUnscaled(const Raster& raster, const CardModel& model, const Place& rough);

}  // namespace lineup::picture
