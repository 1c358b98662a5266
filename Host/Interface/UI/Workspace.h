#pragma once

#include "../Core/Export.h"
#include "UI_Node.h"

namespace zelworkspace::workspace {

/// The arrangement of a window's panels; opaque to plug-ins.
class Workspace {
public:
    virtual ~Workspace() = default;
};

/// A window of the host's own. UI thread.
class TopLevelWindow : public zelui::ui::UI_Node {
public:
    /// The window's workspace, or null.
    [[nodiscard]] virtual Workspace* GetWorkspace() = 0;
};

/// How a plug-in finds the host's windows. UI thread.
class ZEL_API WorkspaceUtils {
public:
    /// The host's main window; or null. No reference is taken.
    [[nodiscard]] static TopLevelWindow* FindMainTopLevelWindow();
};

}  // namespace zelworkspace::workspace
