#include "Tests/Support/FakeToolkit/FakeToolkit.h"

#include "Host/Services/Text/UnicodeText.h"

#include <utility>

namespace test {

namespace {

using ControlRef = zelui::ui::NodeRef<zelui::ui::UI_Node>;

ControlRef MakeControl(const std::shared_ptr<CallLog>& log, const ControlSpec& spec) {
    switch (spec.type) {
        case ControlType::Button:
            return ControlRef(new FakeButton(log, spec.name));
        case ControlType::RadioButton:
            return ControlRef(new FakeRadioButton(log, spec.name));
        case ControlType::HotTextNumber:
            return ControlRef(new FakeHotTextNumber(log, spec.name));
        case ControlType::Popup:
            return ControlRef(new FakePopup(log, spec.name));
    }
    return {};
}

// How the log writes a pointer that is either `expected` or wrong.
const char* Named(const void* pointer, const void* expected, const char* name) {
    if (pointer == nullptr) {
        return "null";
    }
    return pointer == expected ? name : "something else";
}

}  // namespace

/// The main window; belongs to the toolkit, whatever its count.
class FakeToolkit::Window : public zelworkspace::workspace::TopLevelWindow {
public:
    std::int32_t AddRef() override { return ++mReferences; }
    std::int32_t Release() override { return --mReferences; }
    zelui::ui::UI_Node* GetUINodePtr(std::string_view /*name*/, bool /*recursive*/) override { return nullptr; }
    zelworkspace::workspace::Workspace* GetWorkspace() override { return &mWorkspace; }

private:
    std::int32_t mReferences = 1;
    zelworkspace::workspace::Workspace mWorkspace;
};

FakeToolkit::FakeToolkit() : mWindow(std::make_unique<Window>()), mToolkitBefore(zelui::ui::InstallToolkit(this)) {}

FakeToolkit::~FakeToolkit() {
    zelui::ui::InstallToolkit(mToolkitBefore);
}

const zelui::drawbot::SupplierInterface* FakeToolkit::DefaultDrawSupplier() {
    mLog->Add("toolkit", "DefaultDrawSupplier");
    if (onGetDrawSupplier) {
        onGetDrawSupplier();
    }
    return mLog->AnswerTo("DefaultDrawSupplier") == Answer::Right ? &mDrawSupplier : nullptr;
}

zelworkspace::workspace::TopLevelWindow* FakeToolkit::MainWindow() {
    mLog->Add("toolkit", "MainWindow");
    const bool answers = mLog->AnswerTo("MainWindow") == Answer::Right;
    return answers && hasMainWindow ? mWindow.get() : nullptr;
}

zelui::ui::NodeRef<zelui::ui::UI_DialogView> FakeToolkit::BuildDialog(
    const std::string& script, const Brio::String& layoutName, const zelui::drawbot::SupplierInterface* drawSupplier,
    zelui::ui::UI_Node* parent) {
    const zelui::ui::UI_Node* const window = mWindow.get();
    mLog->Add("toolkit", "BuildDialog", zelcore::ToUtf8(layoutName), '"' + script + '"',
              Named(drawSupplier, &mDrawSupplier, "supplier"), Named(parent, window, "window"));
    if (onBuild) {
        onBuild();
    }
    if (mLog->AnswerTo("BuildDialog") != Answer::Right || buildsNothing) {
        return {};
    }
    zelui::ui::NodeRef<FakeDialog> dialog(new FakeDialog(mLog, person));
    dialog->lookups = lookups;
    for (const ControlSpec& spec : layout) {
        dialog->AddControl(MakeControl(mLog, spec), spec.name);
    }
    return zelui::ui::NodeRef<zelui::ui::UI_DialogView>(dialog.Get());
}

}  // namespace test
