#pragma once

#include "Host/Desktop/QtControl.h"

#include <QPushButton>

namespace zelui::qt {

/// A push button. What a person was typing elsewhere counts before the press does.
class QtButton : public QtControl<controls::UI_Button, QPushButton> {
public:
    QtButton(QPushButton& button, std::weak_ptr<NodeTable> nodes);
};

}  // namespace zelui::qt
