#pragma once

#include <string>

#include "../Brio/String.h"
#include "../Core/Export.h"
#include "UI_DialogView.h"
#include "UI_NodeManager.h"
#include "Workspace.h"

namespace zelui::ui {

/// What stands behind the UI classes: a widget toolkit on a desktop, plain values in a test. A program
/// installs one before a plug-in may open a dialog. UI thread.
class UI_Toolkit {
public:
    virtual ~UI_Toolkit() = default;

    /// Null when dialogs need none.
    [[nodiscard]] virtual const drawbot::SupplierInterface* DefaultDrawSupplier() = 0;

    /// The program's main window, or null.
    [[nodiscard]] virtual zelworkspace::workspace::TopLevelWindow* MainWindow() = 0;

    /// Builds the dialog that `script` describes, not yet shown. Throws when the script cannot be used;
    /// null when no dialog was built.
    [[nodiscard]] virtual NodeRef<UI_DialogView> BuildDialog(const std::string& script, const Brio::String& layoutName,
                                                             const drawbot::SupplierInterface* drawSupplier,
                                                             UI_Node* parent) = 0;
};

/// Makes `toolkit` the one in use (null for none) and returns the one before. It must outlive its use.
ZEL_API UI_Toolkit* InstallToolkit(UI_Toolkit* toolkit) noexcept;

/// The toolkit in use, or null.
[[nodiscard]] ZEL_API UI_Toolkit* CurrentToolkit() noexcept;

}  // namespace zelui::ui
