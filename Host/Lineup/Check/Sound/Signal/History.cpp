#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kLowestNarrowRate = 8000;
constexpr double kNarrowPerTone = 4;  // the narrow rate over the highest tone: its second harmonic has room
constexpr double kHopSeconds = 0.01;

}  // namespace

Grid MakeGrid(double rate, double highest) {
    Grid grid{rate, 0, 0};
    while (grid.NarrowRate() / 2 >= std::max(kLowestNarrowRate, kNarrowPerTone * highest)) {
        ++grid.halvings;
    }
    grid.hop = std::max(1, static_cast<int>(std::lround(kHopSeconds * grid.NarrowRate())));
    return grid;
}

History::History(int inputs, const Grid& cut, double seconds, bool isLossy) : grid(cut), lossy(isLossy) {
    const auto narrowCount = static_cast<std::size_t>(seconds * cut.NarrowRate());
    const auto hopCount = static_cast<std::size_t>(seconds / cut.HopSeconds()) + 1;
    for (int input = 0; input < inputs; ++input) {
        narrow.emplace_back(narrowCount);
        hops.emplace_back(hopCount);
    }
}

double History::SecondsFirst() const {
    return static_cast<double>(narrow.front().First()) / grid.NarrowRate();
}

}  // namespace lineup::sound
