#pragma once

#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Support/FakeToolkit/FakeDialog.h"

#include <stdexcept>
#include <string>

namespace fuzz {

/// How a dialog was left.
struct Leaving {
    bool accepted = false;  ///< the last button pressed was OK
    bool threw = false;     ///< an error broke in
    bool edited = false;    ///< something was changed before
};

/// A person who does in the dialog what the input says: types, clicks, chooses, presses, and perhaps sees the
/// screen go away. What a layout does not hold cannot be used.
inline void UseDialog(test::FakeDialog& dialog, Bytes& bytes, Leaving& leaving) {
    constexpr int kMostActions = 12;
    const auto type = [&](const char* name) {
        auto& number = dialog.Number(name);
        const double value = static_cast<double>(bytes.Float());
        if (!number.IsDisabled()) {
            number.Type(value);
        }
    };
    const auto press = [&](const char* name, bool accepts) {
        dialog.Button(name).Press();
        leaving.accepted = accepts;
    };
    for (int i = 0; i < kMostActions; ++i) {
        const std::size_t action = bytes.Below(9);
        leaving.edited = leaving.edited || action < 5;
        switch (action) {
            case 0:
                type("frequencyHotTextNumber");
                break;
            case 1:
                type("amplitudeHotTextNumber");
                break;
            case 2:
            case 3:
                dialog.Click(action == 2 ? "steadyTonesBtn" : "identifyChannelsBtn");
                break;
            case 4: {
                auto& popup = dialog.Popup("identifierFormatPopup");
                const auto index = std::int64_t{bytes.Take<std::int8_t>()};
                if (!popup.IsDisabled()) {
                    popup.Choose(index);
                }
                break;
            }
            case 5:
                press("okButton", true);
                break;
            case 6:
                press("cancelButton", false);
                break;
            case 7:
                leaving.threw = true;
                throw std::runtime_error("the screen went away");
            default:
                return;
        }
    }
}

}  // namespace fuzz
