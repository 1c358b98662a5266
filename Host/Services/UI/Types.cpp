#include "Host/Interface/UI/Controls.h"

// The compiler puts a class's type beside its destructor: here, for every class of the user interface that is cast to.

namespace zelui::ui {

Message::~Message() = default;
UI_Node::~UI_Node() = default;

}  // namespace zelui::ui

namespace zelui::controls {

UI_ControlChangedMessage::~UI_ControlChangedMessage() = default;
UI_ControlView::~UI_ControlView() = default;
UI_Button::~UI_Button() = default;
UI_RadioButton::~UI_RadioButton() = default;
UI_HotTextNumber::~UI_HotTextNumber() = default;
UI_Popup::~UI_Popup() = default;

}  // namespace zelui::controls
