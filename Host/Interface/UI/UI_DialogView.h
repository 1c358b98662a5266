#pragma once

#include <string>
#include <vector>

#include "UI_Node.h"

namespace zelui::ui {

/// What has been looked up by name in a dialog so far.
struct Lookups {
    std::vector<std::string> missing;  ///< names that it does not have, in the order of asking
    std::string lastFound;             ///< the name looked up last, when it was there
    std::string lastKind;              ///< and what the toolkit calls a control of that kind
};

/// The root view of a modal dialog.
class UI_DialogView : public UI_Node {
public:
    /// Shows the dialog and returns when it has been closed, by Close or by the person.
    virtual void RunModal() = 0;

    /// Ends the modal run. Without one it does nothing.
    virtual void Close() = 0;

    /// For messages about a layout that is not what its dialog needs.
    [[nodiscard]] virtual Lookups LookedUp() const { return {}; }
};

}  // namespace zelui::ui
