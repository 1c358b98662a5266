#include "Host/Lineup/Validation/Examination/Joins.h"

#include <algorithm>
#include <cmath>

namespace lineup::validation {

float PieceBound(const Samples& samples) {
    constexpr float kOfTheLoudest = 1e-3F;
    float loudest = 0;
    for (const std::vector<float>& channel : samples) {
        for (const float sample : channel) {
            loudest = std::max(loudest, std::abs(sample));
        }
    }
    return kOfTheLoudest * loudest;
}

std::vector<std::uint32_t> DrawCuts(Random& random, std::uint32_t count, std::uint32_t grid, int pieces) {
    std::vector<std::uint32_t> cuts = {count};
    while (cuts.size() < static_cast<std::size_t>(pieces)) {
        const auto cut = static_cast<std::uint32_t>(random.Below(count / grid + 1)) * grid;
        cuts.push_back(cut);
        if (grid == 1 && cut < count) {
            cuts.push_back(cut + 1);
        }
    }
    std::ranges::sort(cuts);
    return cuts;
}

}  // namespace lineup::validation
