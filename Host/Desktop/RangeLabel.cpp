#include "Host/Desktop/RangeLabel.h"

#include "Host/Desktop/HotTextNumber.h"

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
        ShowRange();
    }
}

void RangeLabel::ShowRange() {
    setText(mPattern.arg(mNumber->Format(mNumber->minimum()), mNumber->Format(mNumber->maximum()) + mNumber->suffix()));
}

}  // namespace zelui::qt
