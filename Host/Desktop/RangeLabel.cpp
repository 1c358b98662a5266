#include "Host/Desktop/RangeLabel.h"

#include "Host/Desktop/HotTextNumber.h"
#include "Host/Desktop/WrongColour.h"

#include <QAccessible>
#include <QEvent>

namespace zelui::qt {

RangeLabel::RangeLabel(QWidget* parent) : QLabel(parent) {
    Mute();
}

// Quieter than the number; a disabled label's own colour is quieter still.
void RangeLabel::Mute() {
    setForegroundRole(isEnabled() ? QPalette::PlaceholderText : QPalette::WindowText);
}

void RangeLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        Mute();
    }
}

void RangeLabel::Follow() {
    mPattern = text();
    mNumber = qobject_cast<HotTextNumber*>(buddy());
    if (mNumber != nullptr) {
        connect(mNumber, &HotTextNumber::RangeChanged, this, &RangeLabel::ShowRange);
        connect(mNumber, &HotTextNumber::RightnessChanged, this, &RangeLabel::ShowRightness);
        ShowRange();
    }
}

void RangeLabel::ShowRange() {
    setText(mPattern.arg(mNumber->Format(mNumber->minimum()), mNumber->Format(mNumber->maximum()) + mNumber->suffix()));
    mNumber->setAccessibleDescription(text());
}

// A wrong number is red, and so is what it may be; a screen reader is told the latter.
void RangeLabel::ShowRightness() {
    QPalette colours;
    if (mNumber->IsWrong()) {
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::PlaceholderText}) {
            colours.setColor(role, WrongColour(palette()));
        }
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
    setPalette(colours);
}

}  // namespace zelui::qt
