#include "Host/Interface/UI/UI_Toolkit.h"
#include "Host/Interface/UI/Workspace.h"

namespace zelworkspace::workspace {

TopLevelWindow* WorkspaceUtils::FindMainTopLevelWindow() {
    zelui::ui::UI_Toolkit* const toolkit = zelui::ui::CurrentToolkit();
    return toolkit == nullptr ? nullptr : toolkit->MainWindow();
}

}  // namespace zelworkspace::workspace
