#include "Host/Interface/Tarn/UI_Tarn.h"

#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/UI/UI_Toolkit.h"

#include <istream>
#include <iterator>
#include <string_view>

namespace zeltarn {

namespace {

constexpr std::string_view kNoUserInterface =
    "$$$/zeltarn/UI_Tarn/Error/NoUserInterface=This program has no user interface to show a dialog with.";
constexpr std::string_view kModelessNotOffered =
    "$$$/zeltarn/UI_Tarn/Error/ModelessNotOffered=Dialogs can only be shown modally.";

}  // namespace

// NOLINTNEXTLINE(modernize-pass-by-value): plug-ins are built against this signature
UI_Tarn::UI_Tarn(const Brio::String& layoutName, const zelui::drawbot::SupplierInterface* drawSupplier,
                 zelui::ui::UI_Node* parent)
    : mTarnLayoutName(layoutName), mDrawSupplier(drawSupplier), mParent(parent) {}

UI_Tarn::~UI_Tarn() = default;

void UI_Tarn::Initialize() {}

void UI_Tarn::Destruction() {}

void UI_Tarn::SetupPostCloseCallback() {}

std::string UI_Tarn::GetLayoutStream(const Brio::String& /*layoutName*/) {
    return {};
}

void UI_Tarn::ParseTarnScript(std::istream& script, bool modeless) {
    if (modeless) {
        zelcore::config::ThrowError(kModelessNotOffered);
    }
    zelui::ui::UI_Toolkit* const toolkit = zelui::ui::CurrentToolkit();
    if (toolkit == nullptr) {
        zelcore::config::ThrowError(kNoUserInterface);
    }
    const std::string text{std::istreambuf_iterator<char>(script), std::istreambuf_iterator<char>()};
    mView = toolkit->BuildDialog(text, mTarnLayoutName, mDrawSupplier, mParent);
    // Without a view too: the dialog is the one to report that it has none.
    Initialize();
    if (!mView) {
        return;
    }
    SetupPostCloseCallback();
    mView->RunModal();
    Destruction();
}

zelui::ui::NodeRef<zelui::ui::UI_DialogView> UI_Tarn::GetView() const {
    return mView;
}

}  // namespace zeltarn
