#pragma once

#include "Tests/Support/FakeToolkit/FakeToolkit.h"

#include <string>
#include <vector>

namespace test {

/// The controls of the layout for mono clips.
inline std::vector<ControlSpec> PlainLayout() {
    return {{"frequencyHotTextNumber", ControlType::HotTextNumber},
            {"amplitudeHotTextNumber", ControlType::HotTextNumber},
            {"cancelButton", ControlType::Button},
            {"okButton", ControlType::Button}};
}

/// The controls of the layout with idents.
inline std::vector<ControlSpec> IdentifiersLayout() {
    auto layout = PlainLayout();
    layout.push_back({"steadyTonesBtn", ControlType::RadioButton});
    layout.push_back({"identifyChannelsBtn", ControlType::RadioButton});
    layout.push_back({"identifierFormatPopup", ControlType::Popup});
    return layout;
}

/// `layout` without the control called `name`.
inline std::vector<ControlSpec> Without(std::vector<ControlSpec> layout, const std::string& name) {
    std::erase_if(layout, [&](const ControlSpec& spec) { return spec.name == name; });
    return layout;
}

/// `layout` where the control called `name` is of another type: a button, or a popup if it was one.
inline std::vector<ControlSpec> WithWrongType(std::vector<ControlSpec> layout, const std::string& name) {
    for (ControlSpec& spec : layout) {
        if (spec.name == name) {
            spec.type = spec.type == ControlType::Button ? ControlType::Popup : ControlType::Button;
        }
    }
    return layout;
}

}  // namespace test
