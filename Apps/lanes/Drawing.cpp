#include "Apps/lanes/Drawing.h"

#include <algorithm>

namespace lanes {

namespace {

constexpr double kDigitHeight = 0.73;  // of the type's size

double AnchoredShare(Anchor anchor) {
    switch (anchor) {
        case Anchor::Left:
            return 0;
        case Anchor::Centre:
            return 0.5;
        case Anchor::Right:
            break;
    }
    return 1;
}

}  // namespace

Label MakeLabel(const Measure& measure, const std::string& text, TextStyle style, Anchor anchor, double x, double y,
                double room) {
    style.size *= std::min(1.0, room / std::max(1.0, measure(text, style)));
    const double width = measure(text, style);
    const double height = kDigitHeight * style.size;
    return {text, style, {x - AnchoredShare(anchor) * width, y - height / 2, width, height}};
}

}  // namespace lanes
