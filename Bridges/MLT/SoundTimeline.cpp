#include "Bridges/MLT/SoundTimeline.h"

#include <cstdlib>

namespace bridge {

const SoundTimeline::Stretch* SoundTimeline::FindNeighbour(std::int64_t position, int rateHz) const {
    for (std::size_t age = 0; age < kRemembered; ++age) {
        const Stretch& stretch = mStretches.at((mNewest + kRemembered - age) % kRemembered);
        if (stretch.rateHz == rateHz && (stretch.position == position || stretch.position == position - 1)) {
            return &stretch;
        }
    }
    return nullptr;
}

std::int64_t SoundTimeline::Start(std::int64_t position, std::int64_t exactStart, std::int64_t count, int rateHz) {
    std::int64_t start = exactStart;
    if (const Stretch* const neighbour = FindNeighbour(position, rateHz)) {
        start = neighbour->position == position ? neighbour->start : neighbour->end;
        if (std::abs(start - exactStart) > count / 2) {
            start = exactStart;
        }
    }
    mNewest = (mNewest + 1) % kRemembered;
    mStretches.at(mNewest) = {position, start, start + count, rateHz};
    return start;
}

void SoundTimeline::Reset() {
    mStretches = {};
}

}  // namespace bridge
