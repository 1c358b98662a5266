#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"

namespace lineup::picture {

/// Where a card lies in a frame, pixels: x is where its left edge is, mirrored or not.
struct Place {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool mirrored = false;
    bool flipped = false;

    /// Where a fraction of the card lies.
    [[nodiscard]] double X(double fraction) const { return x + (mirrored ? 1 - fraction : fraction) * width; }
    [[nodiscard]] double Y(double fraction) const { return y + (flipped ? 1 - fraction : fraction) * height; }

    /// A rectangle of the card, in pixels, left before right and top before bottom.
    [[nodiscard]] Box Of(const Box& box) const {
        return {X(mirrored ? box.right : box.left), Y(flipped ? box.bottom : box.top),
                X(mirrored ? box.left : box.right), Y(flipped ? box.top : box.bottom)};
    }
};

}  // namespace lineup::picture
