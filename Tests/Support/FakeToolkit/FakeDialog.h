#pragma once

#include "Host/Interface/UI/UI_DialogView.h"
#include "Tests/Support/FakeToolkit/FakeControls.h"

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace test {

class FakeDialog;

/// What a person does while the dialog is open. One that returns without having closed the dialog closes
/// the window.
using Person = std::function<void(FakeDialog&)>;

/// A root view of fake controls, called "dialog".
class FakeDialog : public FakeNode<zelui::ui::UI_DialogView> {
public:
    FakeDialog(const std::shared_ptr<CallLog>& log, Person person);

    void AddControl(zelui::ui::NodeRef<zelui::ui::UI_Node> control, const std::string& name);

    zelui::ui::UI_Node* GetUINodePtr(std::string_view name, bool recursive) override;
    void RunModal() override;
    void Close() override;
    [[nodiscard]] zelui::ui::Lookups LookedUp() const override { return lookups; }

    zelui::ui::Lookups lookups;  ///< what it says of look-ups; those made with it are added

    /// The control called `name`; throws std::logic_error when it is missing or of another type.
    template <class Control>
    Control& Get(const std::string& name) {
        auto* const control = dynamic_cast<Control*>(mControls[name].Get());
        if (control == nullptr) {
            throw std::logic_error("the dialog has no such control: " + name);
        }
        return *control;
    }

    FakeButton& Button(const std::string& name) { return Get<FakeButton>(name); }
    FakeRadioButton& RadioButton(const std::string& name) { return Get<FakeRadioButton>(name); }
    FakeHotTextNumber& Number(const std::string& name) { return Get<FakeHotTextNumber>(name); }
    FakePopup& Popup(const std::string& name) { return Get<FakePopup>(name); }

    /// Switches a radio button on and the others off, as a person does.
    void Click(const std::string& radioButton);

    [[nodiscard]] bool IsOpen() const { return mOpen; }

private:
    Person mPerson;
    std::map<std::string, zelui::ui::NodeRef<zelui::ui::UI_Node>> mControls;
    bool mOpen = false;
};

}  // namespace test
