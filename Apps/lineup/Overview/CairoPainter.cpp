#include "Apps/lineup/Overview/CairoPainter.h"

#include <cstddef>

namespace cli {

namespace {

constexpr const char* kFont = "DejaVu Sans";

void SetColour(cairo_t* context, lanes::Rgb colour, double opacity) {
    const auto part = [colour](unsigned shift) { return static_cast<double>((colour >> shift) & 0xFF) / 255; };
    cairo_set_source_rgba(context, part(16), part(8), part(0), opacity);
}

void Select(cairo_t* context, const lanes::TextStyle& style) {
    // The same widths on every surface and at every size.
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_set_font_options(context, options);
    cairo_font_options_destroy(options);
    cairo_select_font_face(context, kFont, CAIRO_FONT_SLANT_NORMAL,
                           style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, style.size);
}

}  // namespace

lanes::Measure CairoMeasure(cairo_t* context) {
    return [context](const std::string& text, const lanes::TextStyle& style) {
        Select(context, style);
        cairo_text_extents_t extents;
        cairo_text_extents(context, text.c_str(), &extents);
        return extents.x_advance;
    };
}

void Paint(cairo_t* context, const lanes::Drawing& drawing) {
    for (std::size_t i = 0; i < drawing.boxes.size(); ++i) {
        const lanes::Box& box = drawing.boxes[i];
        cairo_rectangle(context, box.area.x, box.area.y, box.area.width, box.area.height);
        // One path of all neighbours in the list that look alike: a wave is a thousand boxes.
        const lanes::Box* const next = i + 1 < drawing.boxes.size() ? &drawing.boxes[i + 1] : nullptr;
        if (next == nullptr || next->colour != box.colour || next->opacity != box.opacity) {
            SetColour(context, box.colour, box.opacity);
            cairo_fill(context);
        }
    }
    for (const lanes::Label& label : drawing.labels) {
        Select(context, label.style);
        SetColour(context, label.style.colour, 1);
        cairo_move_to(context, label.box.x, label.box.Bottom());
        cairo_show_text(context, label.text.c_str());
    }
}

}  // namespace cli
