#include "Tests/Support/FakeToolkit/FakeDialog.h"

#include <utility>

namespace test {

FakeDialog::FakeDialog(const std::shared_ptr<CallLog>& log, Person person)
    : FakeNode(log, "dialog"), mPerson(std::move(person)) {}

void FakeDialog::AddControl(zelui::ui::NodeRef<zelui::ui::UI_Node> control, const std::string& name) {
    mControls[name] = std::move(control);
}

zelui::ui::UI_Node* FakeDialog::GetUINodePtr(std::string_view name, bool recursive) {
    Log().Add(Name(), "GetUINodePtr", name, recursive);
    switch (AnswerTo("GetUINodePtr")) {
        case Answer::Nothing:
            return nullptr;
        case Answer::Nonsense:
            return this;
        case Answer::Right:
            break;
    }
    const auto found = mControls.find(std::string(name));
    if (found == mControls.end()) {
        lookups.missing.emplace_back(name);
        lookups.lastFound.clear();
        return nullptr;
    }
    lookups.lastFound = name;
    lookups.lastKind = "FakeControl";
    return found->second.Get();
}

void FakeDialog::RunModal() {
    Log().Add(Name(), "RunModal");
    if (AnswerTo("RunModal") != Answer::Right) {
        return;
    }
    mOpen = true;
    if (mPerson) {
        mPerson(*this);
    }
    mOpen = false;
}

void FakeDialog::Close() {
    Log().Add(Name(), "Close");
    static_cast<void>(AnswerTo("Close"));
    mOpen = false;
}

void FakeDialog::Click(const std::string& radioButton) {
    for (const auto& [name, control] : mControls) {
        if (auto* const button = dynamic_cast<FakeRadioButton*>(control.Get())) {
            button->Switch(name == radioButton);
        }
    }
    RadioButton(radioButton).ReportChange();
}

}  // namespace test
