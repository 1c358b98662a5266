#pragma once

#include <string>

namespace zelui::qt {

/// Why no window can be opened, or "" when one can. Qt ends the whole process when it finds no display,
/// so this is asked first. `argv` holds the program's `argc` arguments, among which Qt's own -platform
/// counts.
[[nodiscard]] std::string DisplayProblem(int argc, const char* const* argv);

}  // namespace zelui::qt
