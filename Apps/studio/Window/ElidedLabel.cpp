#include "Apps/studio/Window/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace studio {

QString ElidedLabel::Shown() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance(u'\u2026'), QLabel::minimumSizeHint().height()};
}

bool ElidedLabel::event(QEvent* event) {
    const auto* const help = event->type() == QEvent::ToolTip ? dynamic_cast<QHelpEvent*>(event) : nullptr;
    if (help != nullptr && Shown() != text()) {
        QToolTip::showText(help->globalPos(), text(), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), static_cast<int>(alignment() | Qt::TextSingleLine), Shown());
}

}  // namespace studio
