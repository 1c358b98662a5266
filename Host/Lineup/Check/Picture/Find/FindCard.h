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

/// Looks for these cards in the whole frame, mirrored and flipped too; nothing where there is none. One that lies a
/// little beside its place may look like one that does not.
[[nodiscard]] std::optional<FoundCard> FindInWholeFrame(const Raster& raster, std::span<const CardModel> models);

/// The same at any place and scale, from a fifth to two and a half times the frame.
[[nodiscard]] std::optional<FoundCard> FindAnywhere(const Raster& raster, std::span<const CardModel> models);

}  // namespace lineup::picture
