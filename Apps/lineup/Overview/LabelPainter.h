#pragma once

#include "Apps/lineup/Overview/OverviewLayout.h"
#include "Apps/lineup/Overview/OverviewTheme.h"

#include <cairo.h>
#include <string>
#include <vector>

namespace cli {

/// A text that was drawn, and the box that its ink and its spacing fill.
struct Label {
    std::string text;
    Rectangle box;
};

/// How a text is set.
struct TextStyle {
    double size = 0;  ///< pixels
    Rgb colour = 0;
    bool bold = false;
};

/// Which part of a text stands at the given x.
enum class Anchor { kLeft, kCentre, kRight };

/// Draws texts and remembers where. The context must outlive it; one thread.
class LabelPainter {
public:
    explicit LabelPainter(cairo_t* context);

    /// The width of a text, pixels.
    [[nodiscard]] double Width(const std::string& text, const TextStyle& style);

    /// Draws a text with its anchor at `x` and the middle of its digits at `y`, in smaller type if it would
    /// be wider than `room`.
    void Draw(const std::string& text, TextStyle style, Anchor anchor, double x, double y, double room);

    /// All that was drawn, in order.
    [[nodiscard]] const std::vector<Label>& Labels() const { return mLabels; }

private:
    void Select(const TextStyle& style);

    cairo_t* mContext;
    std::vector<Label> mLabels;
};

}  // namespace cli
