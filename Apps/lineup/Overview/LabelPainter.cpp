#include "Apps/lineup/Overview/LabelPainter.h"

#include "Apps/lineup/Overview/CairoColour.h"

#include <algorithm>

namespace cli {

namespace {

constexpr const char* kFont = "DejaVu Sans";
constexpr double kDigitHeight = 0.73;  // of the type's size

double AnchoredShare(Anchor anchor) {
    switch (anchor) {
        case Anchor::kLeft:
            return 0;
        case Anchor::kCentre:
            return 0.5;
        case Anchor::kRight:
            break;
    }
    return 1;
}

}  // namespace

LabelPainter::LabelPainter(cairo_t* context) : mContext(context) {
    // The same widths on every surface and at every size.
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_set_font_options(mContext, options);
    cairo_font_options_destroy(options);
}

void LabelPainter::Select(const TextStyle& style) {
    cairo_select_font_face(mContext, kFont, CAIRO_FONT_SLANT_NORMAL,
                           style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(mContext, style.size);
}

double LabelPainter::Width(const std::string& text, const TextStyle& style) {
    Select(style);
    cairo_text_extents_t extents;
    cairo_text_extents(mContext, text.c_str(), &extents);
    return extents.x_advance;
}

void LabelPainter::Draw(const std::string& text, TextStyle style, Anchor anchor, double x, double y, double room) {
    style.size *= std::min(1.0, room / std::max(1.0, Width(text, style)));
    const double width = Width(text, style);
    const double left = x - AnchoredShare(anchor) * width;
    const double height = kDigitHeight * style.size;
    SetColour(mContext, style.colour);
    cairo_move_to(mContext, left, y + height / 2);
    cairo_show_text(mContext, text.c_str());
    mLabels.push_back({text, {left, y - height / 2, width, height}});
}

}  // namespace cli
