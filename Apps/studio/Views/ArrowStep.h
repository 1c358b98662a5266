#pragma once

#include <QEvent>
#include <QKeyEvent>
#include <QPoint>
#include <optional>

namespace studio {

/// How far an arrow key leads: a step, with Shift ten. Empty for other keys.
[[nodiscard]] inline std::optional<QPoint> ArrowStep(const QKeyEvent& event) {
    constexpr int kBigStep = 10;
    const int step = event.modifiers().testFlag(Qt::ShiftModifier) ? kBigStep : 1;
    switch (event.key()) {
        case Qt::Key_Left:
            return QPoint(-step, 0);
        case Qt::Key_Right:
            return QPoint(step, 0);
        case Qt::Key_Up:
            return QPoint(0, -step);
        case Qt::Key_Down:
            return QPoint(0, step);
        default:
            return std::nullopt;
    }
}

/// Takes an arrow key for the widget that has the focus; the window has its own use for it.
[[nodiscard]] inline bool TakesArrowKey(QEvent& event) {
    const auto* const key = event.type() == QEvent::ShortcutOverride ? dynamic_cast<QKeyEvent*>(&event) : nullptr;
    if (key == nullptr || !ArrowStep(*key)) {
        return false;
    }
    event.accept();
    return true;
}

}  // namespace studio
