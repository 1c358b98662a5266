#pragma once

#include <lineup/Card.h>
#include "Host/Lineup/Check/Picture/Place.h"

#include <vector>

namespace lineup::picture {

struct CardSize {
    int width = 0;
    int height = 0;

    bool operator==(const CardSize&) const = default;
};

/// A size of television.
[[nodiscard]] bool IsUsual(const CardSize& size);

/// How large a card may have been when it was sent, that lies at `place` and was not scaled: those of television first.
/// The SD card's height is known less well than its width, for it has two lines that run across it.
[[nodiscard]] std::vector<CardSize> LikelySentSizes(Card card, const Place& place);

/// The same of one that was scaled as a whole: sizes of television of about that shape, but for those so large that
/// what their edges were rounded by hardly matters.
[[nodiscard]] std::vector<CardSize> LikelyFirstSizes(const Place& place);

}  // namespace lineup::picture
