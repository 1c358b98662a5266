#include "Tests/Support/FakeToolkit/FakeControls.h"

#include "Host/Services/Text/UnicodeText.h"

namespace test {

std::int64_t FakePopup::AddItem(const Brio::String& label) {
    mLabels.push_back(zelcore::ToUtf8(label));
    Log().Add(Name(), "AddItem", mLabels.back());
    return AnswerTo("AddItem") == Answer::Right ? static_cast<std::int64_t>(mLabels.size()) - 1 : -kNonsense;
}

void FakePopup::SetValue(std::int64_t index) {
    Log().Add(Name(), "SetValue", index);
    static_cast<void>(AnswerTo("SetValue"));
    const bool exists = index >= 0 && index < static_cast<std::int64_t>(mLabels.size());
    mChosen = exists ? index : -1;
}

}  // namespace test
