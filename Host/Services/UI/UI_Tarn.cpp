#include "Host/Interface/Tarn/UI_Tarn.h"

#include "Host/Interface/Core/Casts.h"
#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/UI/UI_Toolkit.h"
#include "Host/Services/Text/UnicodeText.h"

#include <istream>
#include <iterator>
#include <string_view>

namespace zeltarn {

namespace {

constexpr std::string_view kNoUserInterface =
    "$$$/zeltarn/UI_Tarn/Error/NoUserInterface=This program has no user interface to show a dialog with.";
constexpr std::string_view kModelessNotOffered =
    "$$$/zeltarn/UI_Tarn/Error/ModelessNotOffered=Dialogs can only be shown modally.";

std::string Refusal(const Brio::String& layoutName, const std::string& cause) {
    return "cannot set up the dialog " + zelcore::ToUtf8(layoutName) + ": " + cause;
}

// The control that a dialog could not do without, or one of them.
std::string MissingText(const std::vector<std::string>& names) {
    std::string text = "its layout has no ";
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " and no " : ", no ") + names[i];
    }
    return text;
}

// Prepares `dialog` before it is shown. What it throws about its controls names none of them: that is added.
void Prepare(UI_Tarn& dialog, const Brio::String& layoutName) {
    const auto view = dialog.GetView();
    const auto lookups = [&view] { return view ? view->LookedUp() : zelui::ui::Lookups(); };
    try {
        dialog.Initialize();
    } catch (Brio::NullInterfaceException& error) {
        if (const auto missing = lookups().missing; !missing.empty()) {
            error.Explain(Refusal(layoutName, MissingText(missing)));
        }
        throw;
    } catch (zelcore::config::Error& error) {
        const auto [missing, name, kind] = lookups();
        if (error.Key() == zelcore::utility::kInvalidTypeConversion && !name.empty()) {
            error.Explain(Refusal(layoutName, name + " is a " + kind + ", which the dialog cannot use"));
        }
        throw;
    }
}

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
    Prepare(*this, mTarnLayoutName);
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
