#pragma once

#include "Host/Interface/UI/UI_NodeManager.h"
#include "Host/Interface/UI/Workspace.h"

/// What the plug-in asks its host's shell for. UI thread.
namespace Kest {

/// The host's main window, or null.
zelworkspace::workspace::TopLevelWindow* GetTopLevelMenu();

/// The main window's workspace, or null.
zelworkspace::workspace::Workspace* GetWorkspace();

/// What dialogs are drawn with, or null.
const zelui::drawbot::SupplierInterface* GetDrawSupplier();

}  // namespace Kest
