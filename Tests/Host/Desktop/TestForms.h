#pragma once

#include "Host/Interface/UI/Controls.h"
#include "Host/Interface/UI/UI_DialogView.h"

#include <string>

namespace test {

/// A form whose dialog holds what `widgets` says.
[[nodiscard]] std::string Form(const std::string& widgets);

/// A form with one control of each kind: number, first and second (radio buttons), list, button.
[[nodiscard]] std::string FormWithOneOfEach();

/// Builds a dialog from a form with a toolkit of its own.
[[nodiscard]] zelui::ui::NodeRef<zelui::ui::UI_DialogView> Build(const std::string& form);

/// Why a form cannot be built, or "no error".
[[nodiscard]] std::string BuildError(const std::string& form);

}  // namespace test
