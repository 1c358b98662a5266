#include "Host/Desktop/QtRadioButton.h"

namespace zelui::qt {

QtRadioButton::QtRadioButton(QRadioButton& button, std::weak_ptr<NodeTable> nodes)
    : QtControl(button, std::move(nodes)) {
    ReportOn(&QRadioButton::toggled);
}

void QtRadioButton::SetValue(std::int32_t value) {
    QRadioButton* const button = Control();
    if (button == nullptr) {
        return;
    }
    const FormDialog::CodeChange quiet(*button);
    if (value != kOff) {
        button->setChecked(true);
        return;
    }
    // Qt keeps one of an exclusive group on, whatever code says.
    const bool exclusive = button->autoExclusive();
    button->setAutoExclusive(false);
    button->setChecked(false);
    button->setAutoExclusive(exclusive);
}

std::int32_t QtRadioButton::GetValue() const {
    return Control() != nullptr && Control()->isChecked() ? kOn : kOff;
}

}  // namespace zelui::qt
