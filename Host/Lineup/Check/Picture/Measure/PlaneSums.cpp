#include "Host/Lineup/Check/Picture/Measure/PlaneSums.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <span>

namespace lineup::picture {

namespace {

using Codes = std::span<const std::uint16_t>;

// R'G'B' of full range is scaled by its greatest code, which is not a power of two.
bool HasExactSums(const Plane& plane) {
    int exponent = 0;
    return std::frexp(plane.scale, &exponent) == 0.5F;
}

Codes LineOf(const Plane& plane, int y, int left, int right) {
    return plane.codes.subspan(
        static_cast<std::size_t>(y) * static_cast<std::size_t>(plane.width) + static_cast<std::size_t>(left),
        static_cast<std::size_t>(std::max(0, right - left)));
}

using CodeChanges = std::array<std::uint32_t, kBlockGrid>;  // of a line: no line has so many values that they overflow

// Place i of the result is that of value i and each eighth after it.
CodeChanges ChangesBetween(Codes values, Codes before) {
    CodeChanges changes{};
    const auto change = [&](std::size_t at, std::size_t place) {
        changes[place] += static_cast<std::uint32_t>(std::abs(std::int32_t{values[at]} - std::int32_t{before[at]}));
    };
    const std::size_t whole = values.size() / kBlockGrid * kBlockGrid;
    for (std::size_t x = 0; x < whole; x += kBlockGrid) {
        for (std::size_t place = 0; place < kBlockGrid; ++place) {
            change(x + place, place);
        }
    }
    for (std::size_t x = whole; x < values.size(); ++x) {
        change(x, x - whole);
    }
    return changes;
}

}  // namespace

PlaneSums PlainSumsIn(const Plane& plane, const Area& area) {
    PlaneSums sums;
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            const auto value = static_cast<double>(plane.At(x, y));
            sums.values += value;
            sums.squares += value * value;
        }
    }
    return sums;
}

PlaneSums SumsIn(const Plane& plane, const Area& area) {
    if (!HasExactSums(plane)) {
        return PlainSumsIn(plane, area);
    }
    std::uint64_t values = 0;
    std::uint64_t squares = 0;
    for (int y = area.top; y < area.bottom; ++y) {
        for (const std::uint64_t code : LineOf(plane, y, area.left, area.right)) {
            values += code;
            squares += code * code;
        }
    }
    const auto scale = static_cast<double>(plane.scale);
    return {.values = static_cast<double>(values) * scale, .squares = static_cast<double>(squares) * scale * scale};
}

void AddPlainChanges(const Plane& plane, const Area& area, bool across, GridChanges& changes) {
    for (int y = area.top + (across ? 0 : 1); y < area.bottom; ++y) {
        GridChanges ofLine{};
        for (int x = area.left + (across ? 1 : 0); x < area.right; ++x) {
            const float before = across ? plane.At(x - 1, y) : plane.At(x, y - 1);
            ofLine[static_cast<std::size_t>(x) % kBlockGrid] += std::abs(static_cast<double>(plane.At(x, y) - before));
        }
        if (across) {
            std::ranges::transform(changes, ofLine, changes.begin(), std::plus());
        } else {
            changes.at(static_cast<std::size_t>(y) % kBlockGrid) += std::accumulate(ofLine.begin(), ofLine.end(), 0.0);
        }
    }
}

void AddChanges(const Plane& plane, const Area& area, bool across, GridChanges& changes) {
    const int left = area.left + (across ? 1 : 0);
    if (left >= area.right) {
        return;
    }
    if (!HasExactSums(plane)) {
        AddPlainChanges(plane, area, across, changes);
        return;
    }
    const auto scale = static_cast<double>(plane.scale);
    for (int y = area.top + (across ? 0 : 1); y < area.bottom; ++y) {
        const Codes before =
            across ? LineOf(plane, y, left - 1, area.right - 1) : LineOf(plane, y - 1, left, area.right);
        const CodeChanges ofLine = ChangesBetween(LineOf(plane, y, left, area.right), before);
        for (std::size_t i = 0; i < kBlockGrid; ++i) {
            const int place = across ? left + static_cast<int>(i) : y;
            changes.at(static_cast<std::size_t>(place) % kBlockGrid) += ofLine.at(i) * scale;
        }
    }
}

}  // namespace lineup::picture
