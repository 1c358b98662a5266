#include "Src/ToneSettingsDialog/HandleToneSettingsDialog.h"

#include "Src/ToneSettingsDialog/ContractViolation.h"
#include "Src/ToneSettingsDialog/ToneSettingsDialogImpl.h"
#include "Src/ToneSettingsDialog/UI_TarnScriptLoader.h"

#include <sstream>
#include <tuple>

namespace {

using DataExchangeRef = Brio::InterfaceRef<IToneSettingsDialogDataExchange>;

constexpr const char* kFunction =
    "void HandleToneSettingsDialog(const Brio::String &, Brio::BrioUnknownRef, const "
    "zelui::drawbot::SupplierInterface *, zelui::ui::UI_Node *)";

// `object` as a data exchange, with a reference of its own; empty when it has not that interface.
DataExchangeRef AsDataExchange(const Brio::BrioUnknownRef& object) {
    if (!object) {
        return {};
    }
    Brio::BrioUnknownRef taken = object;
    void* answer = nullptr;
    const Brio::Result result =
        taken->QueryMap(GuidOf(static_cast<IToneSettingsDialogDataExchange*>(nullptr)), &answer);
    auto* const dataExchange = static_cast<IToneSettingsDialogDataExchange*>(answer);
    if (result >= 0 && dataExchange != nullptr) {
        // The answer is the same object and came without a reference: it holds the one taken for the question.
        std::ignore = taken.Detach();
        return DataExchangeRef::Adopt(dataExchange);
    }
    // A failure that answers all the same has handed its answer over: nobody else lets go of it.
    DataExchangeRef::Adopt(dataExchange);
    return {};
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the call holds a reference of its own
void HandleToneSettingsDialog(const Brio::String& layoutName, Brio::BrioUnknownRef dataExchange,
                              const zelui::drawbot::SupplierInterface* drawSupplier, zelui::ui::UI_Node* parent) {
    const DataExchangeRef typedDataExchange = AsDataExchange(dataExchange);
    if (!typedDataExchange) {
        RaiseContractViolation("dataExchange != NULL", kFunction, __LINE__);
    }
    const zeltarn::UI_TarnScriptLoader loader(layoutName);
    std::stringstream script;
    if (!loader.GetStream(script)) {
        return;
    }
    ToneSettingsDialogImpl dialog(layoutName, drawSupplier, parent, typedDataExchange);
    dialog.ParseTarnScript(script, false);
}
