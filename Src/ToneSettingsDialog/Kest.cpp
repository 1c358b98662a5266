#include "Src/ToneSettingsDialog/Kest.h"

namespace Kest {

zelworkspace::workspace::TopLevelWindow* GetTopLevelMenu() {
    return zelworkspace::workspace::WorkspaceUtils::FindMainTopLevelWindow();
}

zelworkspace::workspace::Workspace* GetWorkspace() {
    auto* const window = GetTopLevelMenu();
    return window == nullptr ? nullptr : window->GetWorkspace();
}

const zelui::drawbot::SupplierInterface* GetDrawSupplier() {
    const auto* const manager = zelui::ui::UI_NodeManager::Get(false);
    return manager == nullptr ? nullptr : manager->GetDefaultDrawSupplier();
}

}  // namespace Kest
