#pragma once

#include "Host/Interface/UI/UI_Node.h"

namespace zelui::ui {

/// The root view of a modal dialog.
class UI_DialogView : public UI_Node {
public:
    /// Shows the dialog and returns when it has been closed, by Close or by the person.
    virtual void RunModal() = 0;

    /// Ends the modal run. Without one it does nothing.
    virtual void Close() = 0;
};

}  // namespace zelui::ui
