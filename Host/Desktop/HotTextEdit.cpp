#include "Host/Desktop/HotTextEdit.h"

#include "Host/Desktop/WrongColour.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cstdlib>

namespace zelui::qt {

HotTextEdit::HotTextEdit(QWidget* parent) : QLineEdit(parent) {
    SetPlacingCursor(false);
}

void HotTextEdit::SetPlacingCursor(bool placing) {
    mPlacingCursor = placing;
    setCursor(!isEnabled() ? Qt::ArrowCursor : placing ? Qt::IBeamCursor : Qt::SizeHorCursor);
}

// What is typed next replaces the number and leaves its unit.
void HotTextEdit::SelectNumber() {
    if (auto* const number = qobject_cast<QAbstractSpinBox*>(parentWidget())) {
        number->selectAll();
    }
}

void HotTextEdit::mousePressEvent(QMouseEvent* event) {
    if (mPlacingCursor || event->button() != Qt::LeftButton) {
        QLineEdit::mousePressEvent(event);
        return;
    }
    mMouse = Mouse::Pressed;
    mLast = event->globalPosition().toPoint();
    SelectNumber();
}

void HotTextEdit::mouseMoveEvent(QMouseEvent* event) {
    if (mMouse == Mouse::Free) {
        QLineEdit::mouseMoveEvent(event);
        return;
    }
    const QPoint position = event->globalPosition().toPoint();
    const int pixels = position.x() - mLast.x();
    if (mMouse == Mouse::Pressed && std::abs(pixels) < QApplication::startDragDistance()) {
        return;
    }
    // What was needed to tell a drag from a click does not count, so that the number starts where it was.
    if (mMouse == Mouse::Dragging && pixels != 0) {
        Q_EMIT Dragged(pixels, event->modifiers());
    }
    mMouse = Mouse::Dragging;
    mLast = position;
}

void HotTextEdit::mouseReleaseEvent(QMouseEvent* event) {
    if (mMouse == Mouse::Free || event->button() != Qt::LeftButton) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    mMouse = Mouse::Free;
    SelectNumber();
}

void HotTextEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    if (mPlacingCursor) {
        QLineEdit::mouseDoubleClickEvent(event);
        return;
    }
    mMouse = Mouse::Free;
    SetPlacingCursor(true);
    SelectNumber();
}

void HotTextEdit::keyPressEvent(QKeyEvent* event) {
    QLineEdit::keyPressEvent(event);
    const bool ends = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (ends) {
        SetPlacingCursor(false);
    }
}

void HotTextEdit::focusOutEvent(QFocusEvent* event) {
    mMouse = Mouse::Free;
    SetPlacingCursor(false);
    QLineEdit::focusOutEvent(event);
    deselect();
}

void HotTextEdit::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        mMouse = Mouse::Free;
        SetPlacingCursor(false);
    }
}

void HotTextEdit::MarkWrong(bool wrong) {
    mIsWrong = wrong;
    QPalette colours;
    if (wrong) {
        colours.setColor(QPalette::Text, WrongColour(palette()));
    }
    setPalette(colours);
}

void HotTextEdit::PaintOutline() {
    QPainter painter(this);
    painter.setPen(palette().color(mIsWrong ? QPalette::Text : QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void HotTextEdit::paintEvent(QPaintEvent* event) {
    const auto* const number = qobject_cast<QDoubleSpinBox*>(parentWidget());
    if (number == nullptr || number->hasFocus() || hasSelectedText()) {
        QLineEdit::paintEvent(event);
        PaintOutline();
        return;
    }
    const QString unit = text().endsWith(number->suffix()) ? number->suffix() : QString();
    const QString digits = text().chopped(unit.size());
    constexpr int kLineEditInset = 2;  // where a line edit without a frame begins its text
    const QRect space = rect().adjusted(kLineEditInset, 0, -kLineEditInset, 0);
    const Qt::Alignment alignment = Qt::AlignVCenter | Qt::AlignLeft;

    QPainter painter(this);
    QFont underlined = font();
    underlined.setUnderline(isEnabled());
    painter.setFont(underlined);
    painter.setPen(palette().color(isEnabled() && !mIsWrong ? QPalette::Link : QPalette::Text));
    QRect drawn;
    painter.drawText(space, static_cast<int>(alignment), digits, &drawn);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(space.adjusted(fontMetrics().horizontalAdvance(digits), 0, 0, 0), static_cast<int>(alignment),
                     unit);
}

}  // namespace zelui::qt
