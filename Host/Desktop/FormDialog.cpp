#include "Host/Desktop/FormDialog.h"

#include "Host/Desktop/HotTextNumber.h"

#include <QKeyEvent>
#include <QRadioButton>
#include <algorithm>
#include <utility>

namespace zelui::qt {

FormDialog::FormDialog(QWidget* parent) : QDialog(parent) {}

void FormDialog::Prepare() {
    const auto buttons = findChildren<QPushButton*>();
    const QString escapeName = property("escapeButton").toString();
    for (QPushButton* const button : buttons) {
        if (button->isDefault()) {
            mDefaultButton = button;
        }
        if (!escapeName.isEmpty() && button->objectName() == escapeName) {
            mEscapeButton = button;
        }
        connect(button, &QPushButton::clicked, this, [this, button] { mPressed = button; });
    }
    const auto numbers = findChildren<HotTextNumber*>();
    for (const HotTextNumber* const number : numbers) {
        connect(number, &HotTextNumber::RightnessChanged, this, &FormDialog::JudgeNumbers);
    }
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

void FormDialog::JudgeNumbers() {
    const auto numbers = findChildren<HotTextNumber*>();
    if (mDefaultButton != nullptr) {
        mDefaultButton->setDisabled(std::ranges::any_of(numbers, &HotTextNumber::IsWrong));
    }
}

// Of radio buttons, Tab comes to the one that is on; a window would open with the first, where Space changes it.
void FormDialog::FocusChosen() {
    const QWidget* first = nextInFocusChain();
    while (first != this && (!first->isEnabled() || (first->focusPolicy() & Qt::TabFocus) == 0)) {
        first = first->nextInFocusChain();
    }
    const auto* const radio = qobject_cast<const QRadioButton*>(first);
    if (radio == nullptr || radio->isChecked()) {
        return;
    }
    const auto beside = radio->parentWidget()->findChildren<QRadioButton*>(Qt::FindDirectChildrenOnly);
    const auto chosen = std::ranges::find_if(beside, &QRadioButton::isChecked);
    if (chosen != beside.end()) {
        (*chosen)->setFocus(Qt::TabFocusReason);
    }
}

bool FormDialog::Run() {
    mPressed = nullptr;
    if (!mError) {
        FocusChosen();
        exec();
    }
    if (mError) {
        std::rethrow_exception(std::exchange(mError, nullptr));
    }
    return result() == QDialog::Accepted;
}

void FormDialog::EndRun() {
    if (isVisible()) {
        done(mPressed != nullptr && mPressed == mDefaultButton ? QDialog::Accepted : QDialog::Rejected);
    }
}

void FormDialog::CallHandlers(const std::function<void()>& handlers) {
    try {
        handlers();
    } catch (...) {
        mError = std::current_exception();
        done(QDialog::Rejected);
    }
}

void FormDialog::CommitTyping() {
    const auto numbers = findChildren<HotTextNumber*>();
    for (HotTextNumber* const number : numbers) {  // assistive technology types without the focus
        number->CommitTyping();
    }
}

FormDialog* FormDialog::Of(const QWidget* widget) {
    return widget == nullptr ? nullptr : qobject_cast<FormDialog*>(widget->window());
}

void FormDialog::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel) && mEscapeButton != nullptr) {
        mEscapeButton->click();
    } else {
        QDialog::keyPressEvent(event);
    }
}

FormDialog::CodeChange::CodeChange(const QWidget& control) : mDialog(Of(&control)) {
    if (mDialog != nullptr) {
        ++mDialog->mCodeChanges;
    }
}

FormDialog::CodeChange::~CodeChange() {
    if (mDialog != nullptr) {
        --mDialog->mCodeChanges;
    }
}

}  // namespace zelui::qt
