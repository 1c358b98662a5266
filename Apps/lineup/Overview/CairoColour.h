#pragma once

#include "Apps/lineup/Overview/OverviewTheme.h"

#include <cairo.h>

namespace cli {

/// Draws in `colour` from now on, `opacity` 0 to 1.
inline void SetColour(cairo_t* context, Rgb colour, double opacity = 1) {
    const auto part = [colour](unsigned shift) { return static_cast<double>((colour >> shift) & 0xFF) / 255; };
    cairo_set_source_rgba(context, part(16), part(8), part(0), opacity);
}

}  // namespace cli
