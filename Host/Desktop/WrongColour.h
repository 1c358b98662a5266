#pragma once

#include <QColor>
#include <QPalette>

namespace zelui::qt {

/// The red of what is wrong, which can be read on the palette's window and fields.
[[nodiscard]] inline QColor WrongColour(const QPalette& palette) {
    constexpr int kMiddle = 128;
    return palette.color(QPalette::Base).lightness() < kMiddle ? QColor(255, 123, 114) : QColor(190, 30, 30);
}

}  // namespace zelui::qt
