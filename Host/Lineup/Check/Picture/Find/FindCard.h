#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <cstdint>
#include <optional>
#include <span>

namespace lineup::picture {

/// A card in a picture, roughly: to about a pixel of a small picture.
struct FoundCard {
    const CardModel* model = nullptr;
    Place place;
    double explained = 0;
};

/// Looks for cards in one picture; nothing where there is none.
class CardSearch {
public:
    explicit CardSearch(const Raster& raster);

    /// In the whole frame, mirrored and flipped too. A card that lies a little beside its place may look like one that
    /// does not.
    [[nodiscard]] std::optional<FoundCard> InWholeFrame(std::span<const CardModel> models) const;

    /// How many of the likeliest places along each axis are looked at.
    enum class Care : std::uint8_t { Usual, Great };

    /// At any place and scale, from a fifth to two and a half times the frame.
    [[nodiscard]] std::optional<FoundCard> Anywhere(std::span<const CardModel> models, Care care = Care::Usual) const;

private:
    void Try(const CardModel& model, const Place& place, FoundCard& best) const;
    [[nodiscard]] std::optional<FoundCard> Scaled(FoundCard best) const;

    SmallRaster mSmall;
    double mScale;
};

}  // namespace lineup::picture
