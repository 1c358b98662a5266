#pragma once

#include "Host/Interface/UI/UI_Toolkit.h"
#include "Tests/Support/FakeToolkit/FakeDialog.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// The kinds of control that a layout can hold.
enum class ControlType { Button, RadioButton, HotTextNumber, Popup };

struct ControlSpec {
    std::string name;
    ControlType type;
};

/// A toolkit of plain values: dialogs hold the controls that a test names, whatever their script says.
/// Installed while it lives.
class FakeToolkit : public zelui::ui::UI_Toolkit {
public:
    FakeToolkit();
    ~FakeToolkit() override;
    FakeToolkit(const FakeToolkit&) = delete;
    FakeToolkit& operator=(const FakeToolkit&) = delete;

    std::vector<ControlSpec> layout;          ///< the controls of the next dialog
    Person person;                            ///< who uses it
    bool buildsNothing = false;               ///< BuildDialog returns null
    std::function<void()> onBuild;            ///< called first in BuildDialog; may throw
    std::function<void()> onGetDrawSupplier;  ///< called first in DefaultDrawSupplier; may throw
    bool hasMainWindow = true;
    zelui::ui::Lookups lookups;  ///< what the next dialog says of look-ups

    /// The calls so far.
    [[nodiscard]] std::vector<std::string>& Calls() { return mLog->calls; }
    [[nodiscard]] const std::shared_ptr<CallLog>& Log() { return mLog; }

    /// The dialogs and controls that are alive.
    [[nodiscard]] int LiveNodes() const { return mLog->liveNodes; }

    const zelui::drawbot::SupplierInterface* DefaultDrawSupplier() override;
    zelworkspace::workspace::TopLevelWindow* MainWindow() override;
    zelui::ui::NodeRef<zelui::ui::UI_DialogView> BuildDialog(const std::string& script, const Brio::String& layoutName,
                                                             const zelui::drawbot::SupplierInterface* drawSupplier,
                                                             zelui::ui::UI_Node* parent) override;

private:
    class Window;

    std::shared_ptr<CallLog> mLog = std::make_shared<CallLog>();
    zelui::drawbot::SupplierInterface mDrawSupplier;
    std::unique_ptr<Window> mWindow;
    zelui::ui::UI_Toolkit* mToolkitBefore;
};

}  // namespace test
