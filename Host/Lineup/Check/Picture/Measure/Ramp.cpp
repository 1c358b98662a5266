#include "Host/Lineup/Check/Picture/Measure/Ramp.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

namespace lineup::picture {

namespace {

constexpr double kInside = 0.1;  // of the ramp's height and width, that is left out at each side
constexpr double kShare = (1 - 2 * kInside) * 219 / 256;  // of all codes, that the rest of it goes through
constexpr int kFewestDistinct = 8;                        // codes, of a ramp worth the name

}  // namespace

std::optional<RampSteps> MeasureRamp(const DecodedPicture& picture, const CardModel& model, const Place& place) {
    const int width = static_cast<int>(picture.head.width);
    const int height = static_cast<int>(picture.head.height);
    std::vector<bool> seen(std::size_t{1} << picture.head.bits, false);
    unsigned changing = 0;
    std::optional<unsigned> first;
    int across = 0;
    for (const Box& ramp : model.ramps) {
        const Box box = place.Of(ramp);
        const auto inside = [](double from, double to, int count) {
            const double margin = (to - from) * kInside;
            return std::pair(std::max(0, static_cast<int>(std::ceil(from + margin))),
                             std::min(count, static_cast<int>(std::floor(to - margin))));
        };
        const auto [left, right] = inside(box.left, box.right, width);
        const auto [top, bottom] = inside(box.top, box.bottom, height);
        across = std::max(across, right - left);
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) {
                const unsigned code = picture.planes[0][static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                                        static_cast<std::size_t>(x)];
                first = first.value_or(code);
                changing |= code ^ *first;
                seen[code] = true;
            }
        }
    }
    const auto distinct = static_cast<int>(std::ranges::count(seen, true));
    if (distinct < kFewestDistinct) {
        return std::nullopt;
    }
    const int bits = static_cast<int>(picture.head.bits);
    const auto codes = static_cast<int>(kShare * std::ldexp(1.0, bits));
    return RampSteps{
        .bits = bits, .used = bits - std::countr_zero(changing), .distinct = distinct, .due = std::min(across, codes)};
}

}  // namespace lineup::picture
