#pragma once

#include <iosfwd>
#include <string>

#include "../Brio/String.h"
#include "../Core/Export.h"
#include "../UI/UI_DialogView.h"
#include "../UI/UI_NodeManager.h"

namespace zeltarn {

/// The base of dialogs whose layout is a script. The order of the virtual operations is part of the
/// interface. UI thread.
class ZEL_API UI_Tarn {
public:
    UI_Tarn(const Brio::String& layoutName, const zelui::drawbot::SupplierInterface* drawSupplier,
            zelui::ui::UI_Node* parent);
    virtual ~UI_Tarn();
    UI_Tarn(const UI_Tarn&) = delete;
    UI_Tarn& operator=(const UI_Tarn&) = delete;

    /// Called once the controls of the script exist and before the dialog is shown.
    virtual void Initialize();

    /// Called when the dialog has been closed.
    virtual void Destruction();

    /// Called before the dialog is shown, for dialogs that want to be told after it has closed.
    virtual void SetupPostCloseCallback();

    /// The script of another layout that this one includes; the base knows none and returns "".
    virtual std::string GetLayoutStream(const Brio::String& layoutName);

    /// Builds the dialog from `script`, calls Initialize, and runs the dialog modally; returns when it
    /// has been closed. `modeless` must be false: no other way is offered. Throws what the toolkit or
    /// Initialize throws, and the host error for a missing user interface when no toolkit is installed. When
    /// Initialize fails because a control is missing or of another kind and the view knows which, that is
    /// thrown as a std::runtime_error that names it.
    void ParseTarnScript(std::istream& script, bool modeless);

    /// The root view, or null before there is one.
    [[nodiscard]] zelui::ui::NodeRef<zelui::ui::UI_DialogView> GetView() const;

private:
    Brio::String mTarnLayoutName;
    const zelui::drawbot::SupplierInterface* mDrawSupplier;
    zelui::ui::UI_Node* mParent;
    zelui::ui::NodeRef<zelui::ui::UI_DialogView> mView;
};

}  // namespace zeltarn
