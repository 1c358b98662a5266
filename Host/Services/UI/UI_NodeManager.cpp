#include "Host/Interface/UI/UI_NodeManager.h"

#include "Host/Interface/UI/UI_Toolkit.h"

namespace zelui::ui {

// Programs bring their toolkit up themselves, before a plug-in can ask for one.
UI_NodeManager* UI_NodeManager::Get(bool /*create*/) {
    static UI_NodeManager manager;
    return &manager;
}

const drawbot::SupplierInterface* UI_NodeManager::GetDefaultDrawSupplier() const {
    UI_Toolkit* const toolkit = CurrentToolkit();
    return toolkit == nullptr ? nullptr : toolkit->DefaultDrawSupplier();
}

}  // namespace zelui::ui
