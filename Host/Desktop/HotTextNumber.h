#pragma once

#include "Host/Desktop/NumberText.h"

#include <QDoubleSpinBox>
#include <optional>

namespace zelui::qt {

class HotTextEdit;

/// A number shown as hot text. People drag it to the side, type into it, or step it with the arrow keys
/// and the wheel; Shift makes a change ten times coarser, Ctrl ten times finer. Range, step, decimals and
/// unit are the spin box's own properties, so a form sets them.
///
/// A number given by code is kept to the last bit, and shown as it is even outside the range, until a
/// person changes it.
///
/// What is typed counts when the field is left, or Enter pressed. A text that says no number within the range changes
/// nothing, and stands, marked as wrong, until it is put right, or the number is disabled.
class HotTextNumber : public QDoubleSpinBox {
    Q_OBJECT

public:
    explicit HotTextNumber(QWidget* parent = nullptr);

    /// Shows `number`, any double, without Edited.
    void Show(double number);

    /// What was shown last, or what a person has made of it.
    [[nodiscard]] double Number() const;

    /// Makes `highest` the end of the range; NaN changes nothing. A number that code
    /// gave stays; one that a person chose above `highest` becomes it. Without Edited.
    void SetHighest(double highest);

    /// Takes up what has been typed so far, as leaving the field would.
    void CommitTyping();

    /// What has been typed says no number within the range.
    [[nodiscard]] bool IsWrong() const noexcept { return mWrong.has_value(); }

    /// `number` in the language of the control, with no more decimals than it needs.
    [[nodiscard]] QString Format(double number) const;

    /// Of the widest number in the range and of what is shown.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    [[nodiscard]] QString textFromValue(double value) const override;
    [[nodiscard]] double valueFromText(const QString& text) const override;
    [[nodiscard]] QValidator::State validate(QString& text, int& position) const override;
    void stepBy(int steps) override;

Q_SIGNALS:
    /// A person changed the number.
    void Edited();

    /// The range has changed.
    void RangeChanged();

    /// IsWrong has changed.
    void RightnessChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Step(double steps);
    void TakeValue();
    void TakeChange();
    void TakeTyping();
    [[nodiscard]] bool ShowsGiven(const QString& text) const;
    [[nodiscard]] QString WithoutUnit(QString text) const;
    [[nodiscard]] std::optional<double> Parse(const QString& text) const;
    void SetWrong(std::optional<QString> text);
    void TakeBack();

    HotTextEdit* mEdit;
    std::optional<double> mGiven;   // by code, and not changed by a person since
    double mHeld = 0;               // what the spin box itself held last, in range and rounded
    std::optional<QString> mWrong;  // typed, without the unit: no number within the range
    double mWheel = 0;              // what is left of the wheel's turn below one step
};

}  // namespace zelui::qt
