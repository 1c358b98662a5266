#pragma once

#include "Apps/lanes/Drawing.h"

#include <cairo.h>

namespace cli {

/// Measures texts as they are drawn on `context`, which must outlive it.
[[nodiscard]] lanes::Measure CairoMeasure(cairo_t* context);

/// Draws on a surface of the drawing's size. The context is left in no particular state.
void Paint(cairo_t* context, const lanes::Drawing& drawing);

}  // namespace cli
