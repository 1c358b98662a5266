#pragma once

#include <QDialog>
#include <QDoubleSpinBox>
#include <QString>
#include <functional>

namespace test {

/// The numbers of the dialog under test.
inline constexpr const char* kFrequency = "frequencyHotTextNumber";
inline constexpr const char* kLevel = "amplitudeHotTextNumber";

/// A person's hands on an open dialog: real mouse and key events on real widgets, found by name.
class DialogHands {
public:
    explicit DialogHands(QDialog& dialog) : mDialog(dialog) {}

    [[nodiscard]] QDialog& Dialog() const { return mDialog; }

    /// The widget called `name`. Throws std::runtime_error when it is missing or of another class.
    template <class Widget = QWidget>
    [[nodiscard]] Widget& Find(const char* name) const {
        auto* const widget = mDialog.findChild<Widget*>(name);
        return widget == nullptr ? Missing<Widget>(name) : *widget;
    }

    /// The number as it is shown, unit and all.
    [[nodiscard]] QString Shown(const char* number) const { return Find<QDoubleSpinBox>(number).text(); }

    [[nodiscard]] bool IsEnabled(const char* name) const { return Find(name).isEnabled(); }

    /// Clicks the middle of a control; a radio button at its left end, where the button is.
    void Click(const char* name) const;

    /// Double-clicks a number, types over what is selected, and stays in the field.
    void DoubleClickAndType(const char* number, const char* text) const;

    /// Clicks a number with a button of the mouse, or clicks it twice.
    void ClickNumber(const char* number, Qt::MouseButton button = Qt::LeftButton) const;
    void DoubleClickNumber(const char* number) const;

    /// Moves the mouse over a number with no button pressed.
    void MoveOver(const char* number) const;

    /// What of a number is selected.
    [[nodiscard]] QString Selected(const char* number) const;

    /// Gives a control the focus as Tab does, and types into it.
    void FocusAndType(const char* number, const char* text) const;

    /// Presses Alt and `key` and returns once `done` holds, which for a button is a moment later: it is
    /// shown pressed first. What never comes to hold fails the test.
    void PressMnemonic(Qt::Key key, const std::function<bool()>& done) const;

    /// Presses a key in whatever has the focus.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    /// Drags a number `pixels` to the right of where dragging begins to count.
    void Drag(const char* number, int pixels, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    /// Presses the mouse on a number and lets go a pixel further.
    void Nudge(const char* number) const;

    /// Turns the wheel over a number by `notches`, away from the person when positive.
    void Wheel(const char* number, int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    /// Clicks the close box of the window.
    void ClickCloseBox() const { mDialog.close(); }

    /// The name of the control that has the focus.
    [[nodiscard]] QString Focus() const;

private:
    [[noreturn]] static void ReportMissing(const char* name);
    template <class Widget>
    [[noreturn]] static Widget& Missing(const char* name) {
        ReportMissing(name);
    }
    [[nodiscard]] QWidget& TextOf(const char* number) const;

    QDialog& mDialog;
};

}  // namespace test
