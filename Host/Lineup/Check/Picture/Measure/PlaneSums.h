#pragma once

#include "Host/Lineup/Check/Picture/Raster.h"

#include <array>

namespace lineup::picture {

/// Values of a plane; right and bottom are exclusive, and none of it lies outside.
struct Area {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

struct PlaneSums {
    double values = 0;
    double squares = 0;

    bool operator==(const PlaneSums&) const = default;
};

inline constexpr std::size_t kBlockGrid = 8;  ///< pixels, of the blocks of most codecs

/// By the remainder of a place by the grid.
using GridChanges = std::array<double, kBlockGrid>;

/// The sum of an area's values, and that of their squares.
[[nodiscard]] PlaneSums SumsIn(const Plane& plane, const Area& area);

/// Adds how much changes from each value of an area to the next one across, or down, by where the latter lies.
void AddChanges(const Plane& plane, const Area& area, bool across, GridChanges& changes);

/// The same, value by value. What codes become by a power of two has exact sums, whichever way they are added up: so
/// those above add up codes, and no bit differs.
[[nodiscard]] PlaneSums PlainSumsIn(const Plane& plane, const Area& area);
void AddPlainChanges(const Plane& plane, const Area& area, bool across, GridChanges& changes);

}  // namespace lineup::picture
