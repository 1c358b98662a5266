#pragma once

#include <QKeyEvent>
#include <QSlider>

namespace studio {

/// A slider that keeps the keys that move it, whatever use its window has for them.
class KeySlider : public QSlider {
    Q_OBJECT

public:
    using QSlider::QSlider;

protected:
    bool event(QEvent* event) override {
        const auto* const key = event->type() == QEvent::ShortcutOverride ? dynamic_cast<QKeyEvent*>(event) : nullptr;
        if (key != nullptr && key->modifiers() == Qt::NoModifier && key->key() >= Qt::Key_Home &&
            key->key() <= Qt::Key_PageDown) {
            event->accept();
            return true;
        }
        return QSlider::event(event);
    }
};

}  // namespace studio
