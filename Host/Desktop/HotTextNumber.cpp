#include "Host/Desktop/HotTextNumber.h"

#include "Host/Desktop/HotTextEdit.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

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

HotTextNumber::HotTextNumber(QWidget* parent) : QDoubleSpinBox(parent), mEdit(new HotTextEdit(this)) {
    setLineEdit(mEdit);
    setFrame(false);
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setKeyboardTracking(false);
    connect(this, &QDoubleSpinBox::valueChanged, this, &HotTextNumber::TakeValue);
    connect(mEdit, &QLineEdit::textChanged, this, &HotTextNumber::TakeTyping);
    connect(mEdit, &HotTextEdit::Dragged, this,
            [this](int pixels, Qt::KeyboardModifiers modifiers) { Step(pixels * kStepsAPixel * Fineness(modifiers)); });
}

void HotTextNumber::Show(double number) {
    SetWrong(std::nullopt);
    {
        const QSignalBlocker quiet(this);
        mGiven = number;
        setValue(std::isnan(number) ? minimum() : std::clamp(number, minimum(), maximum()));
        mHeld = value();
    }
    updateGeometry();
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
    updateGeometry();
    Q_EMIT RangeChanged();
}

void HotTextNumber::CommitTyping() {
    interpretText();
}

// A number that code gives has been a float: no more decimals than tell it from other floats.
QString HotTextNumber::Format(double number) const {
    if (!std::isfinite(number) || std::abs(number) >= kLongestPlain) {
        return locale().toString(number, 'g', 6);
    }
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    const auto wanted = static_cast<float>(number);
    for (int digits = 0; digits < decimals(); ++digits) {
        const QString text = QString::number(number, 'f', digits);
        if (text.toFloat() == wanted) {
            return plain.toString(text.toDouble() + 0.0, 'f', digits);  // and no -0
        }
    }
    const QString text = plain.toString(number, 'f', decimals());
    return plain.toDouble(text) == 0 ? plain.toString(0) : text;
}

QSize HotTextNumber::sizeHint() const {
    constexpr int kInset = 2 * 2;  // of a line edit without a frame, and
    constexpr int kCursor = 4;     // where it stands after the last digit
    const double widest = std::max(std::abs(minimum()), std::abs(maximum()));
    QString digits = QString::number(widest, 'f', decimals());
    std::ranges::fill(digits, QChar('0'));
    const QString longest = (minimum() < 0 ? "-" : "") + digits + suffix();
    const QString given = mGiven ? Format(*mGiven) + suffix() : QString();
    const QFontMetrics metrics = fontMetrics();
    const int width = std::max(metrics.horizontalAdvance(longest), metrics.horizontalAdvance(given));
    return {width + kInset + kCursor, QDoubleSpinBox::sizeHint().height()};
}

bool HotTextNumber::ShowsGiven(const QString& text) const {
    return mGiven && text == prefix() + Format(*mGiven) + suffix();
}

// The spin box writes what it holds whenever typing ends. A wrong text stands there as if it were that.
QString HotTextNumber::textFromValue(double value) const {
    return mWrong ? *mWrong : Format(mGiven && value == mHeld ? *mGiven : value);
}

// The text of a number outside the range, which the spin box itself would refuse or replace, and a wrong one: neither
// changes the value.
double HotTextNumber::valueFromText(const QString& text) const {
    return ShowsGiven(text) ? value() : Parse(text).value_or(value());
}

// Anything can be typed.
QValidator::State HotTextNumber::validate(QString& text, int& /*position*/) const {
    const bool stands = ShowsGiven(text) || Parse(text) || (mWrong && WithoutUnit(text) == *mWrong);
    return stands ? QValidator::Acceptable : QValidator::Intermediate;
}

QString HotTextNumber::WithoutUnit(QString text) const {
    if (!suffix().isEmpty() && text.endsWith(suffix())) {
        text.chop(suffix().size());
    }
    return text;
}

// The number within the range that a text says.
std::optional<double> HotTextNumber::Parse(const QString& text) const {
    const NumberRange range{minimum(), maximum()};
    const auto number = ReadNumber(text, suffix(), locale(), range);
    return number && range.Has(*number) ? number : std::nullopt;
}

void HotTextNumber::SetWrong(std::optional<QString> text) {
    const bool was = IsWrong();
    mWrong = std::move(text);
    if (IsWrong() != was) {
        mEdit->MarkWrong(IsWrong());
        Q_EMIT RightnessChanged();
    }
}

// Shows the number again in place of a wrong text.
void HotTextNumber::TakeBack() {
    if (IsWrong()) {
        Show(Number());
    }
}

void HotTextNumber::stepBy(int steps) {
    Step(steps);
}

void HotTextNumber::Step(double steps) {
    CommitTyping();
    TakeBack();
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
    const bool given = ShowsGiven(text);
    SetWrong(typed || given ? std::nullopt : std::optional(WithoutUnit(text)));
    if (mGiven && typed && !given && Format(*typed) != Format(*mGiven)) {
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
    const Qt::KeyboardModifiers held = event->modifiers();
    if (held.testFlag(Qt::AltModifier) && !held.testFlag(Qt::ControlModifier) && !event->text().isEmpty()) {
        event->ignore();  // the mnemonic of a button that cannot be pressed now: nothing to type
        return;
    }
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

// A number that cannot be changed is not left wrong.
void HotTextNumber::changeEvent(QEvent* event) {
    QDoubleSpinBox::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        TakeBack();
    }
}

// The text inside draws all there is to see.
void HotTextNumber::paintEvent(QPaintEvent* /*event*/) {}

}  // namespace zelui::qt
