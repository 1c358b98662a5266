#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A drawing as a list of what is in it, for painters of any library. In pixels, y downwards.
namespace lanes {

/// A colour as 0xRRGGBB, non-linear as screens take it.
using Rgb = std::uint32_t;

struct Rectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double Right() const { return x + width; }
    [[nodiscard]] double Bottom() const { return y + height; }
    [[nodiscard]] double Middle() const { return y + height / 2; }
};

/// A filled rectangle. Its left and right edges lie on whole pixels; those that it covers in part at the top and at
/// the bottom take that part of the colour.
struct Box {
    Rectangle area;
    Rgb colour = 0;
    double opacity = 1;
};

/// How a text is set.
struct TextStyle {
    double size = 0;  ///< pixels
    Rgb colour = 0;
    bool bold = false;
};

/// A text and the box that its digits and its spacing fill: it begins at the box's left edge and stands on the lower.
struct Label {
    std::string text;
    TextStyle style;
    Rectangle box;
};

/// Boxes first, each over those before it, then the texts.
struct Drawing {
    std::vector<Box> boxes;
    std::vector<Label> labels;
};

/// The width of a text, pixels.
using Measure = std::function<double(const std::string& text, const TextStyle& style)>;

/// Which part of a text stands at the given x.
enum class Anchor { Left, Centre, Right };

/// A label with its anchor at `x` and the middle of its digits at `y`, in smaller type if it would be wider than
/// `room`.
[[nodiscard]] Label MakeLabel(const Measure& measure, const std::string& text, TextStyle style, Anchor anchor, double x,
                              double y, double room);

}  // namespace lanes
