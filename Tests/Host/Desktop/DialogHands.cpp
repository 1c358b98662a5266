#include "Tests/Host/Desktop/DialogHands.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeySequence>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QWheelEvent>
#include <stdexcept>
#include <string>

namespace test {

namespace {

// Mouse moves with a button and modifiers down, which QTest::mouseMove cannot send.
void Send(QWidget& widget, QEvent::Type type, QPoint position, Qt::MouseButton button,
          Qt::KeyboardModifiers modifiers) {
    const bool isDown = type != QEvent::MouseButtonRelease;
    QMouseEvent event(type, QPointF(position), QPointF(widget.mapToGlobal(position)), button,
                      isDown ? Qt::LeftButton : Qt::NoButton, modifiers);
    QApplication::sendEvent(&widget, &event);
}

}  // namespace

void DialogHands::ReportMissing(const char* name) {
    throw std::runtime_error(std::string("the dialog has no such control: ") + name);
}

// A spin box's mouse events go to the line edit inside it.
QWidget& DialogHands::TextOf(const char* number) const {
    return *Find<QDoubleSpinBox>(number).findChild<QLineEdit*>();
}

void DialogHands::Click(const char* name) const {
    QWidget& widget = Find(name);
    const bool isRadio = qobject_cast<QRadioButton*>(&widget) != nullptr;
    QTest::mouseClick(&widget, Qt::LeftButton, {}, isRadio ? QPoint(8, widget.height() / 2) : QPoint());
}

void DialogHands::DoubleClickAndType(const char* number, const char* text) const {
    QTest::mouseClick(&TextOf(number), Qt::LeftButton);
    QTest::mouseDClick(&TextOf(number), Qt::LeftButton);
    QTest::keyClicks(QApplication::focusWidget(), text);
}

void DialogHands::ClickNumber(const char* number, Qt::MouseButton button) const {
    QTest::mouseClick(&TextOf(number), button);
}

void DialogHands::DoubleClickNumber(const char* number) const {
    QTest::mouseDClick(&TextOf(number), Qt::LeftButton);
}

void DialogHands::MoveOver(const char* number) const {
    Send(TextOf(number), QEvent::MouseMove, TextOf(number).rect().center(), Qt::NoButton, Qt::NoModifier);
}

QString DialogHands::Selected(const char* number) const {
    return Find<QDoubleSpinBox>(number).findChild<QLineEdit*>()->selectedText();
}

void DialogHands::FocusAndType(const char* number, const char* text) const {
    Find(number).setFocus(Qt::TabFocusReason);
    for (const QChar character : QString::fromUtf8(text)) {
        if (character.unicode() < 0x80) {
            QTest::keyClick(QApplication::focusWidget(), character.toLatin1());
        } else {
            QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, character, {});
        }
    }
}

void DialogHands::Press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyClick(focus == nullptr ? &mDialog : focus, key, modifiers);
}

void DialogHands::Drag(const char* number, int pixels, Qt::KeyboardModifiers modifiers) const {
    QWidget& text = TextOf(number);
    const QPoint start(10, text.height() / 2);
    const QPoint begin = start + QPoint(pixels < 0 ? -20 : 20, 0);
    Send(text, QEvent::MouseButtonPress, start, Qt::LeftButton, modifiers);
    Send(text, QEvent::MouseMove, begin, Qt::NoButton, modifiers);
    Send(text, QEvent::MouseMove, begin + QPoint(pixels / 2, 0), Qt::NoButton, modifiers);
    Send(text, QEvent::MouseMove, begin + QPoint(pixels, 0), Qt::NoButton, modifiers);
    Send(text, QEvent::MouseButtonRelease, begin + QPoint(pixels, 0), Qt::LeftButton, modifiers);
}

void DialogHands::Nudge(const char* number) const {
    QWidget& text = TextOf(number);
    const QPoint start(10, text.height() / 2);
    Send(text, QEvent::MouseButtonPress, start, Qt::LeftButton, {});
    Send(text, QEvent::MouseMove, start + QPoint(1, 0), Qt::NoButton, {});
    Send(text, QEvent::MouseButtonRelease, start + QPoint(1, 0), Qt::LeftButton, {});
}

void DialogHands::PressMnemonic(Qt::Key key, const std::function<bool()>& done) const {
    Press(key, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor(done)) << "nothing came of Alt+" << QKeySequence(key).toString().toStdString();
}

void DialogHands::Wheel(const char* number, int notches, Qt::KeyboardModifiers modifiers) const {
    constexpr int kNotch = 120;
    auto& spinBox = Find<QDoubleSpinBox>(number);
    const QPoint middle = spinBox.rect().center();
    QWheelEvent event(QPointF(middle), QPointF(spinBox.mapToGlobal(middle)), QPoint(), QPoint(0, notches * kNotch),
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&spinBox, &event);
}

QString DialogHands::Focus() const {
    const QWidget* const focus = QApplication::focusWidget();
    return focus == nullptr ? QString() : focus->objectName();
}

}  // namespace test
