#pragma once

#include <cstdint>

/// How a program takes up the widget toolkit at run time: it loads the toolkit's library, looks these
/// functions up by name and needs no header or library of the toolkit itself. UI thread.
namespace zelui::ui {

/// The file name of the library that offers them.
inline constexpr const char* kToolkitLibraryName = "libzelui-qt.so";

/// How the last dialog was left.
enum class DialogOutcome : std::int32_t {
    NoDialog = 0,  ///< none has been shown
    Accepted = 1,  ///< closed by its default button
    Left = 2,      ///< closed in any other way
};

/// Brings the toolkit up and installs it for plug-ins to use. `argc` and `argv` are the program's own;
/// the toolkit takes its options out of them and keeps pointing at both. Returns null when that is done,
/// else a text that says why not, which lives as long as the library.
using InstallToolkitFunction = const char*(int* argc, char** argv);
inline constexpr const char* kInstallToolkitName = "zeluiInstallQtToolkit";

/// Takes the toolkit down again; without one it does nothing.
using UninstallToolkitFunction = void();
inline constexpr const char* kUninstallToolkitName = "zeluiUninstallQtToolkit";

/// How the last dialog that the installed toolkit showed was left.
using LastDialogOutcomeFunction = DialogOutcome();
inline constexpr const char* kLastDialogOutcomeName = "zeluiLastDialogOutcome";

}  // namespace zelui::ui
