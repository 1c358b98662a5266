#pragma once

#include "Host/Desktop/QtControl.h"

#include <QRadioButton>

namespace zelui::qt {

/// A radio button. Both the one that goes on and the one that goes off report the change.
class QtRadioButton : public QtControl<controls::UI_RadioButton, QRadioButton> {
public:
    QtRadioButton(QRadioButton& button, std::weak_ptr<NodeTable> nodes);

    /// Any value but kOff is on. Going on turns the others of the group off; the one of a group that is on
    /// can be turned off by code.
    void SetValue(std::int32_t value) override;
    [[nodiscard]] std::int32_t GetValue() const override;
};

}  // namespace zelui::qt
