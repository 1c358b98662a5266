#include "Host/Desktop/HotTextNumber.h"

#include "Host/Desktop/HotTextEdit.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace zelui::qt {

namespace {

constexpr double kCoarse = 10;
constexpr double kFine = 0.1;
constexpr double kStepsAPixel = 0.1;
constexpr double kWheelNotch = 120;      // QWheelEvent's angle for one notch
constexpr double kLongestPlain = 1e9;    // from here on a number is written with an exponent
constexpr double kHighestOfAll = 1e300;  // ends a range that has no end

double Fineness(Qt::KeyboardModifiers modifiers) {
    return modifiers.testFlag(Qt::ShiftModifier) ? kCoarse : modifiers.testFlag(Qt::ControlModifier) ? kFine : 1;
}

}  // namespace

HotTextNumber::HotTextNumber(QWidget* parent) : QDoubleSpinBox(parent) {
    auto* const edit = new HotTextEdit(this);
    setLineEdit(edit);
    setFrame(false);
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    connect(this, &QDoubleSpinBox::valueChanged, this, &HotTextNumber::TakeValue);
    connect(edit, &QLineEdit::textChanged, this, &HotTextNumber::TakeTyping);
    connect(edit, &HotTextEdit::Dragged, this,
            [this](int pixels, Qt::KeyboardModifiers modifiers) { Step(pixels * kStepsAPixel * Fineness(modifiers)); });
}

void HotTextNumber::Show(double number) {
    const QSignalBlocker quiet(this);
    mGiven = number;
    setValue(std::isnan(number) ? minimum() : std::clamp(number, minimum(), maximum()));
    mHeld = value();
}

double HotTextNumber::Number() const {
    return mGiven.value_or(value());
}

void HotTextNumber::SetHighest(double highest) {
    if (std::isnan(highest)) {
        return;
    }
    {
        const QSignalBlocker quiet(this);
        setMaximum(std::min(highest, kHighestOfAll));
        if (mGiven) {
            Show(*mGiven);
        }
        mHeld = value();
    }
    Q_EMIT RangeChanged();
}

void HotTextNumber::CommitTyping() {
    interpretText();
}

QString HotTextNumber::Format(double number) const {
    if (!std::isfinite(number) || std::abs(number) >= kLongestPlain) {
        return locale().toString(number, 'g', 6);
    }
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    QString text = plain.toString(number, 'f', decimals());
    if (text.contains(plain.decimalPoint())) {
        while (text.endsWith(plain.zeroDigit())) {
            text.chop(1);
        }
        if (text.endsWith(plain.decimalPoint())) {
            text.chop(plain.decimalPoint().size());
        }
    }
    return text == plain.negativeSign() + plain.zeroDigit() ? plain.zeroDigit() : text;
}

bool HotTextNumber::ShowsGiven(const QString& text) const {
    return mGiven && text == prefix() + Format(*mGiven) + suffix();
}

QString HotTextNumber::textFromValue(double value) const {
    return Format(mGiven && value == mHeld ? *mGiven : value);
}

// The text of a number outside the range, which the spin box itself would refuse or replace.
double HotTextNumber::valueFromText(const QString& text) const {
    return ShowsGiven(text) ? value() : QDoubleSpinBox::valueFromText(text);
}

// Any number can be typed; one that cannot be taken as it stands is put right when typing ends.
QValidator::State HotTextNumber::validate(QString& text, int& position) const {
    if (ShowsGiven(text)) {
        return QValidator::Acceptable;
    }
    const QValidator::State state = QDoubleSpinBox::validate(text, position);
    return state == QValidator::Invalid && Parse(text) ? QValidator::Intermediate : state;
}

void HotTextNumber::fixup(QString& text) const {
    if (const auto number = Parse(text)) {
        text = prefix() + Format(std::clamp(*number, minimum(), maximum())) + suffix();
    }
}

std::optional<double> HotTextNumber::Parse(QString text) const {
    text.remove(prefix());
    text.remove(suffix());
    bool isNumber = false;
    const double number = locale().toDouble(text.trimmed(), &isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

void HotTextNumber::stepBy(int steps) {
    Step(steps);
}

void HotTextNumber::Step(double steps) {
    CommitTyping();
    setValue(value() + steps * singleStep());
    selectAll();
}

// The spin box announces its value on Enter, changed or not.
void HotTextNumber::TakeValue() {
    if (value() != mHeld) {
        mHeld = value();
        TakeChange();
    }
}

void HotTextNumber::TakeChange() {
    mGiven.reset();
    Q_EMIT Edited();
}

// A given number outside the range lies, for the spin box, at the range's end: typing that very number
// changes nothing for the spin box and is a change nevertheless.
void HotTextNumber::TakeTyping() {
    const QString text = lineEdit()->text();
    const auto typed = Parse(text);
    if (mGiven && typed && !ShowsGiven(text) && Format(std::clamp(*typed, minimum(), maximum())) != Format(*mGiven)) {
        TakeChange();
    }
}

// However the keyboard comes here, the next key types over the number.
void HotTextNumber::focusInEvent(QFocusEvent* event) {
    QDoubleSpinBox::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::PopupFocusReason) {
        selectAll();
    }
}

void HotTextNumber::keyPressEvent(QKeyEvent* event) {
    const double steps = event->key() == Qt::Key_Up ? 1 : event->key() == Qt::Key_Down ? -1 : 0;
    if (steps == 0) {
        QDoubleSpinBox::keyPressEvent(event);
        return;
    }
    Step(steps * Fineness(event->modifiers()));
}

void HotTextNumber::wheelEvent(QWheelEvent* event) {
    mWheel += event->angleDelta().y() / kWheelNotch;
    const double notches = std::trunc(mWheel);
    mWheel -= notches;
    if (notches != 0) {
        Step(notches * Fineness(event->modifiers()));
    }
    event->accept();
}

// The text inside draws all there is to see.
void HotTextNumber::paintEvent(QPaintEvent* /*event*/) {}

}  // namespace zelui::qt
