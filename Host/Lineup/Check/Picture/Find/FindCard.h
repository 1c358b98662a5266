#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <optional>
#include <span>

namespace lineup::picture {

/// A card in a picture, roughly: to about a pixel of a small picture.
struct FoundCard {
    const CardModel* model = nullptr;
    Place place;
    double explained = 0;
};

/// Looks for these cards: in the whole frame first, then if `everywhere` at any place and scale from a fifth to two and
/// a half times the frame, mirrored and flipped too. Nothing where there is none.
[[nodiscard]] std::optional<FoundCard> FindCard(const Raster& raster, std::span<const CardModel> models,
                                                bool everywhere);

}  // namespace lineup::picture
